// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/player/ScriptedResolver.h"

#include <condition_variable>
#include <dlfcn.h>
#include <map>
#include <mutex>
#include <netdb.h>

namespace {

struct Script {
    std::mutex mutex;
    std::condition_variable changed;
    /// By name; lookups of a name with an empty address block. Guarded by mutex, like questions.
    std::map<QByteArray, QByteArray> addresses;
    std::map<QByteArray, int> questions;
};

/// Never destroyed: a detached resolver thread may outlive main().
Script &script()
{
    static auto &instance = *new Script;
    return instance;
}

/// The numeric address to resolve in place of \a name; empty when there is none. Blocks while the
/// name hangs.
QByteArray addressOf(const QByteArray &name)
{
    Script &all = script();
    std::unique_lock<std::mutex> lock(all.mutex);
    ++all.questions[name];
    all.changed.notify_all();
    const auto hangs = [&] {
        const auto found = all.addresses.find(name);
        return found != all.addresses.end() && found->second.isEmpty();
    };
    all.changed.wait(lock, [&] { return !hangs(); });
    const auto found = all.addresses.find(name);
    return found == all.addresses.end() ? QByteArray() : found->second;
}

} // namespace

/// Interposes the C library's function: the dynamic linker prefers the program's symbols, for its
/// libraries, such as libcurl, as well.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(
    const char *name, const char *service, const addrinfo *hints, addrinfo **result)
{
    using Function = int (*)(const char *, const char *, const addrinfo *, addrinfo **);
    static const auto system = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "getaddrinfo"));
    const QByteArray asked(name);
    if (!asked.endsWith(".scripted.test"))
        return system(name, service, hints, result);
    const QByteArray address = addressOf(asked);
    if (address.isEmpty())
        return EAI_NONAME;
    return system(address.constData(), service, hints, result);
}

void ScriptedResolver::answer(const QByteArray &name, const QByteArray &address)
{
    Script &all = script();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.addresses[name] = address;
    all.changed.notify_all();
}

void ScriptedResolver::hang(const QByteArray &name)
{
    answer(name, {});
}

void ScriptedResolver::release()
{
    Script &all = script();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.addresses.clear();
    all.changed.notify_all();
}

int ScriptedResolver::questions(const QByteArray &name)
{
    Script &all = script();
    const std::lock_guard<std::mutex> lock(all.mutex);
    return all.questions[name];
}
