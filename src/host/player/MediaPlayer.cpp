// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/MediaPlayer.h"

#include "host/player/PlayerText.h"

void MediaPlayer::seek(std::chrono::milliseconds)
{
    Q_EMIT sought(
        playerText(QT_TRANSLATE_NOOP("Player", "This place cannot be found in the file.")));
}

void MediaPlayer::rejoinLive()
{
    Q_EMIT sought({});
}
