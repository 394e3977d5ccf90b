// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "api/values/VeskValuePaths.h"
#include "tests/modules/tunein/TuneInFixture.h"

/// Shows screens from answers that the test writes.
class TuneInRowsTest : public TuneInFixture {
protected:
    /// An ordinary screen.
    static QString screenPath() { return "TuneIn:browse/uri/Browse.ashx?c=x"_s; }

    static QByteArray text(const QByteArray &name)
    {
        return R"({"element":"outline","type":"text","text":")" + name + R"("})";
    }

    /// The favorites folder as the web API sends it.
    static QByteArray presets()
    {
        return R"({"element":"outline","type":"link","text":"Favorites","key":"presets",)"
               R"("URL":"http://opml.radiotime.com/Browse.ashx?c=presets"})";
    }

    /// The rows of a screen whose answer holds these elements.
    RowsAnswer show(const QByteArray &elements, const QStringList &roles = {"title"_s},
        const QString &path = screenPath())
    {
        answer("/Browse.ashx", screen(elements));
        if (!m_started)
            start();
        m_started = true;
        log().clear();
        server().clearRequests();
        return rows(path, roles);
    }

    QStringList titles(const QByteArray &elements, const QString &path = screenPath())
    {
        const RowsAnswer answer = show(elements, {"title"_s}, path);
        EXPECT_TRUE(answer.error.isEmpty());
        return answer.texts();
    }

    void singleList() { set(VeskChildElementsInSingleListPath(), true); }

    /// The path of that screen's own URL, which its folders open again.
    static CMPath folder(const QString &navigation)
    {
        return path("TuneIn:browse/uri/Browse.ashx"_s,
            {{"c"_s, "x"_s}, {"render"_s, "json"_s}, {"formats"_s, "mp3,aac"_s},
                {"partnerId"_s, "partner"_s}, {"serial"_s, "ABC"_s}, {"locale"_s, "en"_s},
                {"veskNavigation"_s, navigation}});
    }

private:
    bool m_started = false;
};
