#include "ctl/UnknownWords.h"

#include <CLI/CLI.hpp>

#include <QVector>

#include <algorithm>

namespace {

/// How many letters must be added, left out, changed or swapped with their neighbour.
int distance(const QString &a, const QString &b)
{
    QVector<QVector<int>> rows(a.size() + 1, QVector<int>(b.size() + 1, 0));
    for (int i = 0; i <= a.size(); ++i) {
        for (int j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                rows[i][j] = i + j;
                continue;
            }
            const int change = a.at(i - 1) == b.at(j - 1) ? 0 : 1;
            int least
                = std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + change});
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1))
                least = std::min(least, rows[i - 2][j - 2] + 1);
            rows[i][j] = least;
        }
    }
    return rows[a.size()][b.size()];
}

QStringList commandsOf(const CLI::App &app)
{
    QStringList names;
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; }))
        names.append(QString::fromStdString(command->get_name()));
    return names;
}

QStringList optionsOf(const CLI::App *app)
{
    QStringList names;
    for (; app; app = app->get_parent()) {
        for (const CLI::Option *option : app->get_options()) {
            for (const std::string &name : option->get_lnames())
                names.append(QStringLiteral("--") + QString::fromStdString(name));
        }
    }
    return names;
}

/// Also one that belongs to a command above.
const CLI::Option *optionOf(const CLI::App *app, const QString &name)
{
    for (; app; app = app->get_parent()) {
        if (const CLI::Option *option = app->get_option_no_throw(name.toStdString()))
            return option;
    }
    return nullptr;
}

const CLI::App *commandOf(const CLI::App &app, const QString &name)
{
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; })) {
        if (command->get_name() == name.toStdString())
            return command;
    }
    return nullptr;
}

QString complaint(const QString &word, const char *kind, const QStringList &known)
{
    const QString meant = nearest(word, known);
    const QString text = QStringLiteral("\"%1\" is no %2").arg(word.left(100), QLatin1String(kind));
    if (!meant.isEmpty())
        return QStringLiteral("%1; did you mean \"%2\"?").arg(text, meant);
    return QStringLiteral("%1; there are: %2").arg(text, known.join(QLatin1String(", ")));
}

} // namespace

QString nearest(const QString &word, const QStringList &candidates)
{
    constexpr int MaxWord = 100;
    if (word.size() > MaxWord)
        return {};
    QString best;
    int least = word.size() < 4 ? 2 : 3;
    for (const QString &candidate : candidates) {
        // A beginning is as good as one slip.
        const int far = word.size() > 1 && candidate.startsWith(word)
            ? 1
            : distance(word.toLower(), candidate);
        if (far < least) {
            least = far;
            best = candidate;
        }
    }
    return best;
}

QString complainOfUnknownWord(const CLI::App &app, const QStringList &arguments)
{
    const CLI::App *at = &app;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &word = arguments.at(i);
        if (word == QLatin1String("--"))
            break;
        if (word.startsWith(QLatin1Char('-')) && word.size() > 1) {
            const QString name = word.section(QLatin1Char('='), 0, 0);
            const CLI::Option *option = optionOf(at, name);
            if (!option)
                return complaint(name, "option", optionsOf(at));
            const bool hasValue = option->get_items_expected_max() > 0;
            if (hasValue && !word.contains(QLatin1Char('=')))
                ++i;
            continue;
        }
        const QStringList names = commandsOf(*at);
        if (names.isEmpty())
            continue;
        const CLI::App *command = commandOf(*at, word);
        if (!command)
            return complaint(word, "command", names);
        at = command;
    }
    return {};
}
