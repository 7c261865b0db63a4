# The commands of README.md. Everything else is CMake: see CMakePresets.json.

.PHONY: all bench check demo dist docs fuzz soak tidy setup format clean

all: setup
	cmake --preset release-32
	cmake --build --preset release-32

bench: setup
	scripts/setup_bench.sh
	scripts/bench.sh

check: setup
	scripts/setup_extras.sh
	scripts/check.sh

demo: setup
	scripts/demo.sh

docs: setup
	scripts/docs.sh

dist: setup
	scripts/dist.sh

# Until something is found or Ctrl-C.
fuzz: setup
	while scripts/fuzz.sh fuzz-64 600 && scripts/fuzz.sh fuzz-32 600 && \
		scripts/fuzz.sh guard-64 600 && scripts/fuzz.sh guard-32 600; do :; done

soak: setup
	cmake --preset release-64
	cmake --build --preset release-64 --target soak
	build/release-64/bin/soak 200000 >/dev/null

tidy: setup
	scripts/tidy.sh

setup:
	scripts/setup.sh

format:
	git ls-files '*.cpp' '*.h' '*.c' | xargs clang-format -i

clean:
	rm -rf build dist out
