// SPDX-License-Identifier: MIT
#ifndef OPTIONS_H
#define OPTIONS_H

#include <QByteArray>
#include <QMap>
#include <QSize>
#include <QString>
#include <QStringList>

class Options;

/// An option of the command line.
struct Option {
    const char *name;
    const char *value; ///< what the help calls its value; null when it takes none
    const char *help; ///< in lines
    QString (*take)(Options &options,
                    const QString &value); ///< returns what is wrong with the value
};

/// What the command line asks for.
class Options
{
public:
    Options();

    /// Takes the arguments, without the program's name. Returns an empty text, or what is wrong
    /// with them.
    QString parse(const QStringList &arguments);

    static QString helpText();

    /// For an option whose value is a number of milliseconds: what is wrong with the value, or an empty
    /// text and the number.
    static QString takeMilliseconds(const char *option, int least, const QString &value,
                                    int *result);

    bool help;
    bool version; ///< is asked for
    bool properties; ///< the table is asked for
    QStringList tags; ///< of the applications to open, each once
    QSize size; ///< of every window
    int timeout; ///< milliseconds that a page may take
    QMap<QByteArray, QString> ofLayer; ///< values of the LauncherLayer's options, by its own names

private:
    QString takeOption(const QString &argument, QStringList *left);
};

#endif // OPTIONS_H
