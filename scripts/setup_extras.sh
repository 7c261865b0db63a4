#!/bin/sh
# Installs what is needed beyond setup.sh to build and test what is built on the library beside the
# tool, if it is not there: setup_extras.sh
set -eu
exec "$(dirname "$0")/install.sh" setup_extras \
    ffmpeg \
    libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev gstreamer1.0-tools gstreamer1.0-plugins-base \
    gstreamer1.0-x \
    libsdl2-dev libxtst-dev xvfb \
    mypy pybind11-dev python3-dev python3-numpy python3-pil python3-pytest
