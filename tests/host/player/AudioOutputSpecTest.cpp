// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/player/AudioOutputSpec.h"

#include <gtest/gtest.h>

namespace {

AudioOutputSpec parsed(const char *text)
{
    const auto spec = AudioOutputSpec::parse(QString::fromUtf8(text));
    EXPECT_TRUE(spec) << text;
    return spec.value_or(AudioOutputSpec());
}

} // namespace

TEST(AudioOutputSpecTest, ReadsTheThreeForms)
{
    EXPECT_EQ(parsed("auto").kind, AudioOutputSpec::Auto);
    EXPECT_EQ(parsed("null").kind, AudioOutputSpec::Null);
    EXPECT_EQ(parsed("wav:out.wav").kind, AudioOutputSpec::Wav);
    EXPECT_TRUE(parsed("auto").file.isEmpty());
    EXPECT_TRUE(parsed("null").file.isEmpty());
}

TEST(AudioOutputSpecTest, TakesTheFilesNameAsItIs)
{
    for (const char *name : {"out.wav", "/tmp/a b.wav", "C:/x.wav", "wav:", " a ", "ä.wav"}) {
        const QString file = QString::fromUtf8(name);
        EXPECT_EQ(parsed(("wav:" + file.toUtf8()).constData()).file, file);
    }
}

TEST(AudioOutputSpecTest, RefusesEverythingElse)
{
    for (const char *text : {"", "wav", "wav:", "AUTO", "auto ", " null", "auto:x",
             "null:", "pulse", "WAV:out.wav", "file:out.wav", "out.wav"})
        EXPECT_FALSE(AudioOutputSpec::parse(QString::fromUtf8(text))) << text;
}
