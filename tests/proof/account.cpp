#include "account.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace proof
{
namespace
{

constexpr uint32_t failed = 13;

// The text of a code that is numbered like the driver kit's: 19 characters of it at most.
std::string timing_unit_code(int64_t code)
{
    static const char *const names[] = {"OK",       "INVAL",    "UNSUPP",   "NOPORT",   "AGAIN(try again)",
                                        "SHUTDOWN", "NODOMAIN", "INTERNAL", "NOTAVAIL", "OUTOFRANGE"};
    const std::string name = code <= 0 && code >= -9 ? names[-code] : format("UNK_RET_VAL(%ld)", code);
    return name.substr(0, 19);
}

} // namespace

account::speaker::speaker(account &account, std::string name, const char *domain)
    : account_(account), name_before_(std::exchange(account.speaker_, std::move(name))),
      domain_before_(std::exchange(account.domain_, domain))
{
}

account::speaker::~speaker()
{
    account_.speaker_ = name_before_;
    account_.domain_ = domain_before_;
}

void account::begin(const std::vector<fault> &faults)
{
    begin_again(faults);
    speaker_shown_.clear();
}

void account::begin_again(const std::vector<fault> &faults)
{
    faults_ = faults;
    transcript_.clear();
    calls_.clear();
    counted_.clear();
    records_.clear();
}

void account::record(const std::string &event, const std::string &text)
{
    record_in(domain_, event, text);
}

void account::record_in(const std::string &domain, const std::string &event, const std::string &text)
{
    if (!traced_)
        return;
    if (speaker_shown_ != speaker_)
        transcript_ += speaker_ + ":\n";
    speaker_shown_ = speaker_;
    transcript_.append("  ").append(event).append(" ").append(domain);
    if (!text.empty())
        transcript_.append(" ").append(text);
    transcript_ += "\n";
}

void account::announce(const std::string &call)
{
    record("API_CALL", call);
}

int64_t account::meet(const std::string &function)
{
    const uint32_t call = ++counted_[function];
    calls_.push_back({function, call});
    for (const fault &each : faults_)
        if (each.function == function && call >= each.call && call - each.call < each.times)
            return each.result;
    return 0;
}

int64_t account::call(const std::string &function, const std::string &arguments)
{
    const int64_t result = meet(function);
    line(function + "(" + arguments + ")" + (result ? format(" = %ld", result) : ""));
    return result;
}

int64_t account::unseen_call(const std::string &function)
{
    return meet(function);
}

void account::text_call(const std::string &function, const std::string &arguments)
{
    if (traced_)
        line(function + "(" + arguments + ")");
}

void account::line(const std::string &text)
{
    transcript_.append("  > ").append(text).append("\n");
}

void account::hand_over(const std::string &function, const octets &record)
{
    records_[function].push_back(record);
}

void account::companion(const std::string &function, const std::string &arguments)
{
    announce(function + "()");
    require(static_cast<uint32_t>(call(function, arguments)), function);
}

void account::driver_kit(const std::string &announcement, const std::string &function, const std::string &arguments)
{
    announce(announcement);
    if (const int64_t code = call(function, arguments)) {
        report_driver_kit(code, function);
        throw failure{failed};
    }
}

void account::timing_unit(const std::string &announcement, const std::string &function, const std::string &arguments)
{
    announce(announcement);
    if (const int64_t code = call(function, arguments)) {
        report_timing_unit(code, function);
        throw failure{failed};
    }
}

void account::attach()
{
    companion("kel_init_attach", "");
}

void account::event_device()
{
    companion("kel_init_eventdev_dev_id_ebcom_get", "0");
}

void account::report(uint32_t code, const std::string &detail)
{
    text_call("kei_util_init_rc_str_get", format("%u", code));
    record_in("GENERAL", "init:EXCEPTION", format("code %u, %s", code, detail.c_str()));
}

void account::report_driver_kit(int64_t code, const std::string &function)
{
    const auto narrow = static_cast<int32_t>(code);
    call("ork_syshandle_get", "0, 1");
    text_call("ork_sys_status_get", format("%d", narrow));
    record_in("GENERAL", "init:EXCEPTION",
              format("0x%x - status %d, %s", static_cast<uint32_t>(narrow), narrow, function.c_str()));
}

void account::report_timing_unit(int64_t code, const std::string &function)
{
    record_in("GENERAL", "EXCEPTION", function + " returned " + timing_unit_code(code));
}

void account::report_system(const std::string &call, int64_t result, int error_number)
{
    text_call("strerror", format("%d", error_number));
    record_in("GENERAL", "init:EXCEPTION",
              format("%s => rc=%ld, errno=%s(%d)", call.c_str(), result, strerror(error_number), error_number));
}

void account::refuse(uint32_t code, const std::string &detail)
{
    report(code, detail);
    throw failure{code};
}

void account::require(uint32_t code, const std::string &step)
{
    if (code)
        refuse(code, step);
}

} // namespace proof
