// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/PluginApi.h"

#include "api/core/version.h"
#include "base/files/Descriptor.h"

#include <QFile>

#include <gelf.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <optional>

namespace {

constexpr char Owner[] = "Vesk";
constexpr std::uint32_t ApiNote = 1;
/// Of all notes of one segment. Those of a usual library take 100.
constexpr std::uint64_t MaxNoteBytes = 64 * 1024;
constexpr std::size_t MaxSegments = 256;

struct EndElf {
    void operator()(Elf *elf) const { ::elf_end(elf); }
};

QString missing()
{
    return QStringLiteral("it does not say with which version of the SDK it was built");
}

/// In the byte order of this machine, as a library for it is.
std::uint32_t numberAt(const char *bytes)
{
    std::uint32_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

/// The problem of each note of the SDK's among \a notes; nothing without any.
std::optional<QString> problemOf(Elf_Data *notes)
{
    std::optional<QString> problem;
    const auto *bytes = static_cast<const char *>(notes->d_buf);
    GElf_Nhdr note {};
    std::size_t name = 0;
    std::size_t content = 0;
    for (std::size_t at = 0; (at = ::gelf_getnote(notes, at, &note, &name, &content)) != 0;) {
        const bool isOurs = note.n_type == ApiNote && note.n_namesz == sizeof Owner
            && std::memcmp(bytes + name, Owner, sizeof Owner) == 0;
        if (!isOurs)
            continue;
        if (note.n_descsz != 2 * sizeof(std::uint32_t))
            return missing();
        constexpr std::uint32_t Most = 9999;
        const auto major = static_cast<int>(std::min(numberAt(bytes + content), Most));
        const auto minor
            = static_cast<int>(std::min(numberAt(bytes + content + sizeof(std::uint32_t)), Most));
        problem = apiProblem(major, minor);
        if (!problem->isEmpty())
            break;
    }
    return problem;
}

Result<void, QString> checkNotes(Elf *elf)
{
    std::size_t count = 0;
    if (::elf_getphdrnum(elf, &count) != 0)
        return failure(missing());
    std::optional<QString> problem;
    for (std::size_t i = 0; i < std::min(count, MaxSegments); ++i) {
        GElf_Phdr segment {};
        if (!::gelf_getphdr(elf, static_cast<int>(i), &segment) || segment.p_type != PT_NOTE
            || segment.p_filesz > MaxNoteBytes)
            continue;
        Elf_Data *const notes
            = ::elf_getdata_rawchunk(elf, static_cast<std::int64_t>(segment.p_offset),
                segment.p_filesz, segment.p_align == 8 ? ELF_T_NHDR8 : ELF_T_NHDR);
        if (!notes)
            continue;
        if (const auto found = problemOf(notes))
            problem = found;
        if (problem && !problem->isEmpty())
            break;
    }
    if (!problem)
        return failure(missing());
    if (!problem->isEmpty())
        return failure(*problem);
    return {};
}

} // namespace

QString apiProblem(int major, int minor)
{
    // Before 1.0 each minor version may break what was built with another one.
    const bool fits
        = VESK_API_MAJOR == 0 ? minor == VESK_API_MINOR : minor >= 0 && minor <= VESK_API_MINOR;
    if (major == VESK_API_MAJOR && fits)
        return {};
    return QStringLiteral("it was built with version %1.%2 of the SDK, and this host has %3.%4")
        .arg(major)
        .arg(minor)
        .arg(VESK_API_MAJOR)
        .arg(VESK_API_MINOR);
}

Result<void, QString> checkPluginApi(const QString &file)
{
    const auto opened
        = files::openRegular(QFile::encodeName(file).toStdString(), O_RDONLY | O_CLOEXEC);
    if (!opened)
        return failure(file + QStringLiteral(": ") + QString::fromStdString(opened.error().text));
    ::elf_version(EV_CURRENT);
    const std::unique_ptr<Elf, EndElf> elf(::elf_begin(opened->number(), ELF_C_READ, nullptr));
    if (!elf || ::elf_kind(elf.get()) != ELF_K_ELF)
        return failure(file + QStringLiteral(" is no library"));
    return checkNotes(elf.get());
}
