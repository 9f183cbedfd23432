// A stream whose text a test reads back.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

class captured_stream
{
public:
    captured_stream() : stream_(open_memstream(&text_, &size_))
    {
    }
    ~captured_stream()
    {
        std::fclose(stream_);
        std::free(text_);
    }
    captured_stream(const captured_stream &) = delete;
    captured_stream &operator=(const captured_stream &) = delete;

    std::FILE *stream()
    {
        return stream_;
    }

    std::string text()
    {
        std::fflush(stream_);
        return std::string(text_, size_);
    }

private:
    char *text_ = nullptr;
    size_t size_ = 0;
    std::FILE *stream_;
};
