// A stream buffer that lets its readers look at what it has ready.
#pragma once

#include <memory>
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

/// Takes the characters of another buffer in large pieces: for a reader that goes through all of
/// it, since what it has taken and not given out is lost to the other.
class ReadAhead final : public OpenBuffer {
public:
    explicit ReadAhead(std::streambuf& whose) : from(whose) {}

protected:
    int_type underflow() override {
        const std::streamsize count = from.sgetn(area.get(), kArea);
        setg(area.get(), area.get(), area.get() + count);
        return count < 1 ? traits_type::eof() : traits_type::to_int_type(area[0]);
    }

private:
    static constexpr int kArea = 1 << 15;

    std::streambuf& from;
    std::unique_ptr<char[]> area = std::make_unique_for_overwrite<char[]>(kArea);
};
