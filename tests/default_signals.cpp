// Tests send signals. One that is ignored or blocked where they are started, as `nohup` does it, acts as usual in them and
// in what they start.
#include <csignal>

namespace
{

[[gnu::constructor]] void let_signals_act()
{
    for (int signal = 1; signal < NSIG; ++signal) {
        struct sigaction now = {};
        if (sigaction(signal, nullptr, &now) == 0 && now.sa_handler == SIG_IGN)
            std::signal(signal, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

} // namespace
