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

    /// Whether the launcher ends without its user.
    bool endsByItself() const;

    static QString helpText();

    bool help;
    bool properties; ///< the table is asked for
    QStringList tags; ///< of the applications to open, each once
    QString screenshot; ///< the file for the pictures; empty when none are asked for
    QString script; ///< to be evaluated in every page; empty when there is none
    QSize size; ///< of every window
    int wait; ///< milliseconds between the loading of the last page and what is asked of the pages
    int timeout; ///< milliseconds that a page may take to load, where endsByItself()
    bool once;
};

#endif // OPTIONS_H
