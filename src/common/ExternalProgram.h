#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Runs a helper program of the desktop (gsettings, xfconf-query) with an argument list, never
// through a shell, so file names reach it exactly as they are.
namespace ExternalProgram {

struct Result
{
    bool ok = false;   // started, finished in time and exited with 0
    QByteArray output; // what it wrote to stdout
    QString reason;    // why ok is false
};

// Waits at most timeoutMs for the program to finish; a program not on PATH fails at once.
Result Run(const QString& program, const QStringList& arguments, int timeoutMs = 10000);

} // namespace ExternalProgram
