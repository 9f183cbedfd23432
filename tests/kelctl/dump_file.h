// The library writes handle dumps to one name on the whole machine. The file is gone with the object.
#pragma once

#include <cstdio>

struct dump_file_removed {
    dump_file_removed() = default;
    ~dump_file_removed()
    {
        std::remove("/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME");
    }
    dump_file_removed(const dump_file_removed &) = delete;
    dump_file_removed &operator=(const dump_file_removed &) = delete;
};
