#include "host/player/StreamText.h"

#include <QTextCodec>

namespace {

constexpr int MaxLength = 512;

} // namespace

QString streamText(const QByteArray &bytes)
{
    static QTextCodec *const utf8 = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QString text = utf8->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        text = QString::fromLatin1(bytes);
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char(' ');
    }
    text = text.trimmed().left(MaxLength);
    return text.isNull() ? QStringLiteral("") : text;
}
