// What a stretch of work is expected to show: its calls and records in the form of a transcript, the octets of the
// records it hands over, and the faults it meets. The model tells its story to an account; a step that fails throws.
#pragma once

#include "step.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace proof
{

using octets = std::vector<uint8_t>;

// A step of an operation failed: the operation goes on at its end, with this code.
struct failure {
    uint32_t code;
};

// An outside call, by its place among the calls of the same function within the step, from 1.
struct made_call {
    std::string function;
    uint32_t call;
};

class account
{
public:
    explicit account(bool traced) : traced_(traced)
    {
    }

    // A new step begins: its own faults, and nothing shown yet.
    void begin(const std::vector<fault> &faults);

    // The same for a thread whose transcript goes on.
    void begin_again(const std::vector<fault> &faults);

    const std::string &transcript() const
    {
        return transcript_;
    }

    const std::vector<made_call> &calls() const
    {
        return calls_;
    }

    const std::map<std::string, std::vector<octets>> &records() const
    {
        return records_;
    }

    // ---- Who speaks ----

    // While it lives, records are in the name of this function.
    class speaker
    {
    public:
        speaker(account &account, std::string name, const char *domain);
        ~speaker();
        speaker(const speaker &) = delete;
        speaker &operator=(const speaker &) = delete;

    private:
        account &account_;
        const std::string name_before_;
        const char *const domain_before_;
    };

    // ---- What is shown ----

    void record(const std::string &event, const std::string &text = "");
    void record_in(const std::string &domain, const std::string &event, const std::string &text);
    void announce(const std::string &call);

    // ---- Calls: each gives the fault it met, 0 without ----

    int64_t call(const std::string &function, const std::string &arguments);
    int64_t unseen_call(const std::string &function);
    void text_call(const std::string &function, const std::string &arguments); // made for a record only, never fails
    void line(const std::string &text);                                        // in the name of the call before it

    void hand_over(const std::string &function, const octets &record);

    // ---- Calls that end the operation when they fail ----

    void companion(const std::string &function, const std::string &arguments);
    void driver_kit(const std::string &announcement, const std::string &function, const std::string &arguments);
    void timing_unit(const std::string &announcement, const std::string &function, const std::string &arguments);
    void attach();
    void event_device();

    // ---- Reports ----

    void report(uint32_t code, const std::string &detail);
    void report_driver_kit(int64_t code, const std::string &function);
    void report_timing_unit(int64_t code, const std::string &function);
    void report_system(const std::string &call, int64_t result, int error_number);
    [[noreturn]] void refuse(uint32_t code, const std::string &detail);
    void require(uint32_t code, const std::string &step); // an inner step's code

private:
    int64_t meet(const std::string &function);

    bool traced_;
    std::string transcript_;
    std::string speaker_;
    const char *domain_ = "";
    std::string speaker_shown_;
    std::vector<fault> faults_;
    std::vector<made_call> calls_;
    std::map<std::string, uint32_t> counted_;
    std::map<std::string, std::vector<octets>> records_;
};

} // namespace proof
