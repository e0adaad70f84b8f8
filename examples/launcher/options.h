#ifndef OPTIONS_H
#define OPTIONS_H

#include <QSize>
#include <QString>
#include <QStringList>

/// What the command line asks for.
class Options
{
public:
    Options();

    /// Takes the arguments, without the program's name. Returns an empty text, or what is wrong
    /// with them.
    QString parse(const QStringList &arguments);

    static QString helpText();

    bool help;
    QStringList tags; ///< of the applications to open, each once
    QString screenshot; ///< the file for the pictures; empty when none are asked for
    QSize size; ///< of every view
    int wait; ///< milliseconds between the loading of the last page and the pictures
};

#endif // OPTIONS_H
