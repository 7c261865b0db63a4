// Frames in numpy arrays.
#ifndef LUMOFE_PYTHON_ARRAYS_H
#define LUMOFE_PYTHON_ARRAYS_H

#include "Layout.h"

#include <cstdint>
#include <pybind11/numpy.h>
#include <vector>

namespace lumofe {

// Rows first. 4:2:0: height * 3 / 2 rows of width bytes, with the chroma below the luma; RGB:
// height, width, 3.
std::vector<pybind11::ssize_t> frameShape(Size size, PixelFormat format);

// The bytes of an array that is handed to the library as it is. Throws TypeError for what is no
// array, ValueError for an array that is not of uint8, of that shape and C-contiguous. Messages
// begin with `name`.
const std::uint8_t* frameBytes(const pybind11::object& array, const char* name,
                               const std::vector<pybind11::ssize_t>& shape);

// Likewise, of an array that is written to, and that must not overlap the input.
std::uint8_t* writableBytes(const pybind11::object& array, const char* name,
                            const std::vector<pybind11::ssize_t>& shape,
                            const pybind11::object& input);

// The size of the frame that an array holds. Throws as frameBytes() does, and ValueError for odd
// sides and those of more than 16384 pixels.
Size frameSize(const pybind11::object& array, const char* name, PixelFormat format);

} // namespace lumofe

#endif
