// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

/// \file
/// Random bytes that nobody can guess, tokens and codes of them, and how they are compared. Pure
/// functions, any thread. A system without random numbers ends the process.

/// Characters of a token: base64url of 256 bits.
constexpr int AccessTokenLength = 43;
constexpr int PairingCodeLength = 6;

QByteArray randomBytes(int count);
QByteArray makeAccessToken();
/// SHA-256, 32 bytes. Enough for a token, which has as many random bits.
QByteArray accessTokenDigest(const QByteArray &token);
/// Digits, each code as likely as any other.
QByteArray makePairingCode();
/// In a time that depends on the sizes alone.
bool isSameSecret(const QByteArray &a, const QByteArray &b);
