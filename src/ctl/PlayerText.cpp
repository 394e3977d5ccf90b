#include "ctl/PlayerText.h"

#include "api/values/VeskPlayLogicData.h"

namespace {

QString wordFor(int state)
{
    // What the user waits for is the connection.
    if (state == VeskPlayLogicState::transitioning)
        return QStringLiteral("connecting");
    return VeskPlayLogicState::toString(static_cast<VeskPlayLogicState::Enum>(state));
}

QString textOf(const QVariantHash &state, const char *name)
{
    return printableText(state.value(QLatin1String(name)).toString());
}

} // namespace

std::string playerLine(const QVariantHash &state, const TerminalStyle &style)
{
    std::string line = style.bold(wordFor(state.value(QStringLiteral("state")).toInt()));
    const auto add = [&line](const std::string &text) {
        if (!text.empty())
            line += "  " + text;
    };
    add(textOf(state, "title").toStdString());
    add(textOf(state, "streamTitle").toStdString());
    constexpr int BitsPerKilobit = 1000;
    const int bitRate = state.value(QStringLiteral("bitrate")).toInt();
    if (bitRate >= BitsPerKilobit)
        add(style.dim(QStringLiteral("%1 kbit/s").arg(bitRate / BitsPerKilobit)));
    const QString error = textOf(state, "error");
    if (!error.isEmpty())
        add(QStringLiteral("error: %1").arg(error).toStdString());
    return line;
}
