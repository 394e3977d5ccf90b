// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include <QDir>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

namespace {

QString contents(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// Every translatable text in the sources of veskctl.
QSet<QString> textsInSources()
{
    static const QRegularExpression use(
        QStringLiteral(R"rx(ctlText\(\s*((?:"(?:[^"\\]|\\.)*"\s*)+)\))rx"));
    static const QRegularExpression literal(QStringLiteral(R"rx("((?:[^"\\]|\\.)*)")rx"));
    QSet<QString> texts;
    const QDir sources(QStringLiteral(CTL_SOURCES));
    for (const QString &name : sources.entryList({QStringLiteral("*.cpp")})) {
        auto uses = use.globalMatch(contents(sources.filePath(name)));
        while (uses.hasNext()) {
            QString text;
            auto literals = literal.globalMatch(uses.next().captured(1));
            while (literals.hasNext())
                text += literals.next().captured(1);
            texts.insert(text.replace(QLatin1String("\\\""), QLatin1String("\"")));
        }
    }
    return texts;
}

QMap<QString, QString> catalogue(const QString &path)
{
    QMap<QString, QString> texts;
    QXmlStreamReader xml(contents(path));
    QString context;
    QString source;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.name() == QLatin1String("source"))
            source = xml.readElementText();
        else if (xml.name() == QLatin1String("translation") && context == QLatin1String("Ctl"))
            texts.insert(source, xml.readElementText());
    }
    return texts;
}

int places(const QString &text)
{
    return text.count(QRegularExpression(QStringLiteral("%[1-9]")));
}

TEST(CtlTextsTest, AreInEveryCatalogueAndNoOthersAre)
{
    const QSet<QString> used = textsInSources();
    EXPECT_GT(used.size(), 30);
    const QDir folder(QStringLiteral(CATALOGUE_SOURCES));
    const QStringList files = folder.entryList({QStringLiteral("vesk_*.ts")});
    EXPECT_GE(files.size(), 3);
    for (const QString &file : files) {
        const QMap<QString, QString> texts = catalogue(folder.filePath(file));
        for (const QString &text : used)
            EXPECT_TRUE(texts.contains(text)) << file.toStdString() << ": " << text.toStdString();
        for (auto it = texts.begin(); it != texts.end(); ++it) {
            EXPECT_TRUE(used.contains(it.key()))
                << file.toStdString() << ": " << it.key().toStdString();
            EXPECT_FALSE(it.value().isEmpty()) << it.key().toStdString();
            EXPECT_EQ(places(it.value()), places(it.key())) << it.value().toStdString();
        }
    }
}

} // namespace
