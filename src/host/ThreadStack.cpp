// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/ThreadStack.h"

#include <algorithm>
#include <csignal>
#include <ctime>
#include <cxxabi.h>
#include <elfutils/libdwfl.h>
#include <execinfo.h>
#include <memory>
#include <semaphore.h>
#include <unistd.h>

namespace {

constexpr int MaxFrames = 100;
constexpr int AnswerSeconds = 2;
/// The handler below, and the C library's way into it.
constexpr int FramesOfSignal = 2;

/// What the signal handler fills in.
struct Frames {
    void *addresses[MaxFrames];
    int count;
    sem_t taken;
};
Frames interruptedFrames;

void takeFrames(int)
{
    interruptedFrames.count = ::backtrace(interruptedFrames.addresses, MaxFrames);
    ::sem_post(&interruptedFrames.taken);
}

/// Has \a thread fill in interruptedFrames.
bool take(pthread_t thread)
{
    ::sem_init(&interruptedFrames.taken, 0, 0);
    struct sigaction action { };
    struct sigaction before { };
    action.sa_handler = &takeFrames;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGUSR2, &action, &before);
    bool taken = false;
    if (::pthread_kill(thread, SIGUSR2) == 0) {
        timespec end {};
        ::clock_gettime(CLOCK_MONOTONIC, &end);
        end.tv_sec += AnswerSeconds;
        taken = ::sem_clockwait(&interruptedFrames.taken, CLOCK_MONOTONIC, &end) == 0;
    }
    // The signal may still reach a thread that did not answer in time; without the handler it would
    // end the process.
    if (taken)
        ::sigaction(SIGUSR2, &before, nullptr);
    return taken;
}

using Text = std::unique_ptr<char, decltype(&std::free)>;

QString readable(const char *name)
{
    int status = 0;
    const Text demangled(abi::__cxa_demangle(name, nullptr, nullptr, &status), &std::free);
    return QString::fromUtf8(demangled ? demangled.get() : name);
}

QString lastPart(const char *path)
{
    return QString::fromUtf8(path).section(QLatin1Char('/'), -1);
}

/// Debug information only from where the code is: what lies elsewhere might be fetched over the
/// network.
int findNoDebugFile(Dwfl_Module *, void **, const char *, Dwarf_Addr, const char *, const char *,
    GElf_Word, char **)
{
    return -1;
}

/// This process's programs and libraries.
class Symbols {
public:
    Symbols()
        : m_dwfl(::dwfl_begin(&callbacks()), &::dwfl_end)
    {
        ::dwfl_linux_proc_report(m_dwfl.get(), ::getpid());
        ::dwfl_report_end(m_dwfl.get(), nullptr, nullptr);
    }

    /// \a address is one in the code of a call, or the one to return to.
    QString describe(void *address) const
    {
        const auto number = reinterpret_cast<GElf_Addr>(address);
        Dwfl_Module *const module = ::dwfl_addrmodule(m_dwfl.get(), number);
        if (!module)
            return QStringLiteral("?? (0x%1)").arg(number, 0, 16);
        // A call's last instruction is the one before that to return to.
        const GElf_Addr call = number - 1;
        const char *const name = ::dwfl_module_addrname(module, call);
        Dwarf_Addr start = 0;
        const char *const file = ::dwfl_module_info(
            module, nullptr, &start, nullptr, nullptr, nullptr, nullptr, nullptr);
        QString line = QStringLiteral("%1 (%2+0x%3)")
                           .arg(name ? readable(name) : QStringLiteral("??"), lastPart(file),
                               QString::number(call - start, 16));
        int sourceLine = 0;
        Dwfl_Line *const source = ::dwfl_module_getsrc(module, call);
        const char *const sourceFile = source
            ? ::dwfl_lineinfo(source, nullptr, &sourceLine, nullptr, nullptr, nullptr)
            : nullptr;
        if (sourceFile)
            line += QStringLiteral(" %1:%2").arg(lastPart(sourceFile), QString::number(sourceLine));
        return line;
    }

private:
    static const Dwfl_Callbacks &callbacks()
    {
        static const Dwfl_Callbacks all {
            &::dwfl_linux_proc_find_elf, &findNoDebugFile, nullptr, nullptr};
        return all;
    }

    const std::unique_ptr<Dwfl, decltype(&::dwfl_end)> m_dwfl;
};

} // namespace

void prepareThreadStacks()
{
    void *address = nullptr;
    ::backtrace(&address, 1);
}

QStringList stackOfThread(pthread_t thread)
{
    QStringList lines;
    if (!take(thread))
        return lines;
    const Symbols symbols;
    for (int i = std::min(FramesOfSignal, interruptedFrames.count); i < interruptedFrames.count;
         ++i)
        lines.append(symbols.describe(interruptedFrames.addresses[i]));
    return lines;
}
