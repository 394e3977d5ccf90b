// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

/// \file
/// What a function returns that can fail: its value, or why there is none. Without Qt.
///
///     Result<Settings, QString> read(const QString &file);
///     ...
///     if (!file.open())
///         return failure(QStringLiteral("%1: cannot be opened").arg(name));
///     return settings;
///     ...
///     const auto settings = read(name);
///     if (!settings)
///         return failure(settings.error());
///     use(*settings);

/// Why something failed, on its way into a Result.
template <class E>
struct Failure {
    E error;
};

template <class E>
Failure<std::decay_t<E>> failure(E &&error)
{
    return {std::forward<E>(error)};
}

/// A \a T, or an \a E that says why there is none. Contextually true with a value. Asking for the
/// one that is not there throws std::bad_variant_access: a mistake of the caller's.
template <class T, class E>
class [[nodiscard]] Result {
public:
    template <class U,
        class = std::enable_if_t<
            std::is_constructible_v<T, U &&> && !std::is_same_v<std::decay_t<U>, Result>>>
    Result(U &&value) // NOLINT(bugprone-forwarding-reference-overload): Result itself is excluded
        : m_content(std::in_place_index<0>, std::forward<U>(value))
    {
    }
    template <class F>
    Result(Failure<F> failure)
        : m_content(std::in_place_index<1>, std::move(failure.error))
    {
    }

    explicit operator bool() const { return m_content.index() == 0; }

    const T &operator*() const & { return std::get<0>(m_content); }
    T &operator*() & { return std::get<0>(m_content); }
    T &&operator*() && { return std::get<0>(std::move(m_content)); }
    const T *operator->() const { return &std::get<0>(m_content); }
    T *operator->() { return &std::get<0>(m_content); }

    const E &error() const & { return std::get<1>(m_content); }
    E &&error() && { return std::get<1>(std::move(m_content)); }

private:
    std::variant<T, E> m_content;
};

/// Done, or an \a E that says why not: `return {};` is success.
template <class E>
class [[nodiscard]] Result<void, E> {
public:
    Result() = default;
    template <class F>
    Result(Failure<F> failure)
        : m_error(std::in_place, std::move(failure.error))
    {
    }

    explicit operator bool() const { return !m_error; }

    const E &error() const & { return m_error.value(); }
    E &&error() && { return std::move(m_error).value(); }

private:
    std::optional<E> m_error;
};
