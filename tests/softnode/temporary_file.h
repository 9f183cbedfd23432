/*
 * temporary_file.h - a file with a text in it, for the life of the object.
 */
#ifndef TESTS_SOFTNODE_TEMPORARY_FILE_H
#define TESTS_SOFTNODE_TEMPORARY_FILE_H

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>

class TemporaryFile
{
public:
    explicit TemporaryFile(std::string_view text) : name_(testing::TempDir() + "softnode-XXXXXX")
    {
        std::FILE *file = fdopen(mkstemp(name_.data()), "w");
        EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), file), text.size());
        EXPECT_EQ(std::fclose(file), 0);
    }

    ~TemporaryFile()
    {
        unlink(name_.c_str());
    }

    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    const std::string &name() const
    {
        return name_;
    }

private:
    std::string name_;
};

#endif
