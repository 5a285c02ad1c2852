#include "common/ExternalProgram.h"

#include <QProcess>
#include <QStandardPaths>

namespace ExternalProgram {

Result Run(const QString& program, const QStringList& arguments, int timeoutMs)
{
    Result result;
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty()) {
        result.reason = program + QStringLiteral(" is not installed");
        return result;
    }
    QProcess process;
    process.setProgram(path);
    process.setArguments(arguments);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start();
    if (!process.waitForFinished(timeoutMs)) {
        result.reason = program + QStringLiteral(": ") + process.errorString();
        process.kill();
        process.waitForFinished(1000);
        return result;
    }
    result.output = process.readAllStandardOutput();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        const QString errors = QString::fromLocal8Bit(process.readAllStandardError()).trimmed();
        result.reason = program + QStringLiteral(" failed: ") +
                        (errors.isEmpty() ? QString::number(process.exitCode()) : errors);
        return result;
    }
    result.ok = true;
    return result;
}

} // namespace ExternalProgram
