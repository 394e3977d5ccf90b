// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/IcyMetadata.h"

namespace directory {

std::string IcyMetadata::block(const std::string &title)
{
    constexpr std::string_view Opening = "StreamTitle='";
    constexpr std::string_view Closing = "';";
    std::string text(Opening);
    text += title.substr(0, MaxBlock - Opening.size() - Closing.size());
    text += Closing;
    const std::size_t units = (text.size() + 15) / 16;
    text.resize(units * 16, '\0');
    return static_cast<char>(units) + text;
}

std::string IcyMetadata::woven(std::string_view audio)
{
    std::string out;
    while (audio.size() >= m_left) {
        out += audio.substr(0, m_left);
        audio.remove_prefix(m_left);
        m_left = Interval;
        const std::string title = m_title();
        out += title == m_last ? std::string(1, '\0') : block(title);
        m_last = title;
    }
    m_left -= audio.size();
    return out.append(audio);
}

} // namespace directory
