// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Password.h"

#include <crypt.h>
#include <memory>

namespace directory {

namespace {

constexpr char Method[] = "$y$"; // yescrypt
// Some four milliseconds, during which the server serves no other client.
constexpr unsigned long Cost = 3;

std::string hashed(const std::string &password, const std::string &setting)
{
    // crypt() would ignore what follows the zero byte.
    if (password.find('\0') != std::string::npos)
        return {};
    const auto room = std::make_unique<crypt_data>();
    // Unlike crypt_r it returns null on failure.
    const char *hash
        = crypt_rn(password.c_str(), setting.c_str(), room.get(), static_cast<int>(sizeof *room));
    return hash ? hash : std::string();
}

} // namespace

std::string passwordHash(const std::string &password)
{
    char salt[CRYPT_GENSALT_OUTPUT_SIZE];
    const bool salted
        = crypt_gensalt_rn(Method, Cost, nullptr, 0, salt, static_cast<int>(sizeof salt));
    return salted ? hashed(password, salt) : std::string();
}

bool passwordMatches(const std::string &password, const std::string &hash)
{
    return !hash.empty() && hashed(password, hash) == hash;
}

bool isPasswordHash(const std::string &text)
{
    return text.compare(0, sizeof Method - 1, Method) == 0
        && crypt_checksalt(text.c_str()) == CRYPT_SALT_OK;
}

} // namespace directory
