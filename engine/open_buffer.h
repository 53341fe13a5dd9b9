// A stream buffer that lets its readers look at what it has ready.
#pragma once

#include <streambuf>

/// The characters from Here() to End() are the next ones of the stream; at the end of them the
/// usual operations fetch more.
class OpenBuffer : public std::streambuf {
public:
    const char* Here() const { return gptr(); }
    const char* End() const { return egptr(); }
    /// Takes that many of them.
    void Take(std::ptrdiff_t count) { gbump(static_cast<int>(count)); }
};
