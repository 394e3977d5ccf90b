// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

/// Inserts titles into a stream as SHOUTcast servers do: after every `interval` bytes of audio a
/// length byte, in units of 16 bytes, and that much text.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace directory {

class IcyMetadata {
public:
    static constexpr std::size_t Interval = 16000;
    /// The most that the length byte can express.
    static constexpr std::size_t MaxBlock = std::size_t(255) * 16;

    /// `title` is called once for each block; an unchanged title is sent as an empty block.
    explicit IcyMetadata(std::function<std::string()> title)
        : m_title(std::move(title))
    {
    }

    std::string woven(std::string_view audio);
    /// A block with its length byte; longer titles are cut.
    static std::string block(const std::string &title);

private:
    std::function<std::string()> m_title;
    std::string m_last;
    std::size_t m_left = Interval;
};

} // namespace directory
