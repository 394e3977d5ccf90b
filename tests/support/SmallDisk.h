// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Full disks and file size limits, for tests of kept files. Plain system calls, without Qt: the
/// tests of every program use them.
#pragma once

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <string>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

/// A small file system in memory, unmounted with this object. Only root may mount one: for
/// others isMounted() is false, and the reason is printed.
class SmallDisk {
public:
    /// \a kib: its size.
    explicit SmallDisk(int kib = 128)
        : m_size("size=" + std::to_string(kib) + "k")
    {
        const char *temporary = std::getenv("TMPDIR");
        m_folder = std::string(temporary ? temporary : "/tmp") + "/small-disk-XXXXXX";
        if (!::mkdtemp(m_folder.data()))
            m_folder.clear();
        m_mounted
            = ::mount("none", m_folder.c_str(), "tmpfs", 0, (m_size + ",mode=700").c_str()) == 0;
        if (!m_mounted) {
            std::cerr << "NOT TESTED ON A FULL DISK: no file system can be mounted here ("
                      << std::strerror(errno) << "); run this test as root\n";
        }
    }
    ~SmallDisk()
    {
        if (m_mounted)
            ::umount2(m_folder.c_str(), MNT_DETACH);
        ::rmdir(m_folder.c_str());
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool isMounted() const { return m_mounted; }
    const std::string &folder() const { return m_folder; }

    /// Fills the disk to the last byte. Not while another process frees space.
    void fill() const
    {
        const int filler = ::open(fillerName().c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        const std::string block(4096, 'x');
        while (::write(filler, block.data(), block.size()) > 0) { }
        ::close(filler);
    }
    void makeRoom() const { ::unlink(fillerName().c_str()); }
    bool setReadOnly(bool readOnly) const
    {
        const unsigned long flags = MS_REMOUNT | (readOnly ? MS_RDONLY : 0);
        return ::mount("none", m_folder.c_str(), "tmpfs", flags, m_size.c_str()) == 0;
    }

private:
    std::string fillerName() const { return m_folder + "/filler"; }

    const std::string m_size;
    std::string m_folder;
    bool m_mounted = false;
};

/// Limits the size of files that this process, or another one, can write, for the life of the
/// object.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes, pid_t process = 0)
        : m_process(process)
    {
        // As the programs do: otherwise the signal would end the test.
        if (m_process == 0)
            std::signal(SIGXFSZ, SIG_IGN);
        ::prlimit(m_process, RLIMIT_FSIZE, nullptr, &m_before);
        const rlimit limit {bytes, m_before.rlim_max};
        ::prlimit(m_process, RLIMIT_FSIZE, &limit, nullptr);
    }
    ~FileSizeLimit() { ::prlimit(m_process, RLIMIT_FSIZE, &m_before, nullptr); }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    const pid_t m_process;
    rlimit m_before {};
};
