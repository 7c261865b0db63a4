# The commands of README.md. Everything else is CMake: see CMakePresets.json.

.PHONY: all check demo dist docs setup format clean

all: setup
	cmake --preset release-32
	cmake --build --preset release-32

check: setup
	scripts/check.sh

demo: setup
	scripts/demo.sh

docs: setup
	scripts/docs.sh

dist: setup
	scripts/dist.sh

setup:
	scripts/setup.sh

format:
	git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format -i

clean:
	rm -rf build dist out
