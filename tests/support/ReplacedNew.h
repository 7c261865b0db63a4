// Programs that are linked with ReplacedNew.cpp get operator new and delete from here, for
// everything in them and in the libraries that they load.
#pragma once

#include <cstddef>

// Such a program defines both. No memory is null, which throws where the language says so.
void* allocateBlock(std::size_t size);
void releaseBlock(void* block);
