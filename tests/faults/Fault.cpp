// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/faults/Fault.h"

Expected sounds()
{
    return {};
}

Expected told(const char *words)
{
    Expected expected;
    expected.ending = Ending::Told;
    expected.words = words;
    return expected;
}

Expected soundsOrTold()
{
    Expected expected;
    expected.ending = Ending::SoundOrTold;
    return expected;
}

Expected triesOn(const char *words)
{
    Expected expected;
    expected.ending = Ending::Trying;
    expected.words = words;
    return expected;
}

Expected Expected::within(double seconds) const
{
    Expected changed = *this;
    (ending == Ending::Sound ? changed.toSound : changed.told) = seconds;
    return changed;
}

Expected Expected::silentFor(double seconds) const
{
    Expected changed = *this;
    changed.silence = seconds;
    return changed;
}

Expected Expected::noticedIn(double seconds) const
{
    Expected changed = *this;
    changed.noticed = seconds;
    return changed;
}

Expected Expected::connecting(int most) const
{
    Expected changed = *this;
    changed.connects = most;
    return changed;
}
