// A folder of a test's own, gone with the object.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

class temporary_folder
{
public:
    temporary_folder() : path_(testing::TempDir() + "kelctl.XXXXXX")
    {
        EXPECT_NE(mkdtemp(path_.data()), nullptr);
    }
    ~temporary_folder()
    {
        std::filesystem::remove_all(path_);
    }
    temporary_folder(const temporary_folder &) = delete;
    temporary_folder &operator=(const temporary_folder &) = delete;

    const std::string &path() const
    {
        return path_;
    }

    // The whole name of a file in it with this text.
    std::string file_with(const std::string &text) const
    {
        const std::string name = path_ + "/file";
        std::ofstream(name, std::ios::binary) << text;
        return name;
    }

private:
    std::string path_;
};
