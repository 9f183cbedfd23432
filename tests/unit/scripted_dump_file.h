// The file that the library dumps its QoS handles into, as the scripted platform has it: a file of the test's own, kept
// in memory, which the library gets when it opens the fixed path. So tests may run side by side.
//
// The transcript shows the calls that open, write and close it:
//
//       > fopen(/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME, w)
//       > fprintf(scheduler_handle=(nil)\n)
//       > fclose()
//
// fail() makes them fail: "fopen" with the errno that it is to leave, "fprintf" with its result and ENOSPC (nothing is
// written then), "fclose" with its result and ENOSPC (the file is closed all the same).
#pragma once

#include <string>

namespace scripted
{

// What is in the file now.
std::string dump_file_text();

// Puts something into the file as an earlier dump would have.
void set_dump_file_text(const std::string &text);

} // namespace scripted
