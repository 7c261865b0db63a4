// Stands in for the functions by which the library prints, in copies that must not: the linker's
// --wrap leads calls of printf and the like here.
#include <cstdarg>
#include <cstdio>
#include <cstring>

extern "C" {

// Callers may use the number of characters.
[[gnu::format(printf, 1, 2)]] int __wrap_printf(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    return length;
}

// The compiler makes calls of these out of simple calls of printf.
int __wrap_puts(const char* text)
{
    return int(std::strlen(text)) + 1;
}

int __wrap_putchar(int character)
{
    return character;
}

} // extern "C"
