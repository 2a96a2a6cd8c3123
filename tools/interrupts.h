#pragma once

class QProcess;

/// Makes the signals that end the program (Ctrl-C and its like) leave nothing behind: the
/// unfinished file of a result goes, a bar on the terminal too. The program then ends by that
/// signal, at once, whatever it was doing.
void endCleanlyOnSignals();

/// Whether a bar stands on the terminal's last line.
void setBarIsShown(bool isShown) noexcept;

/// Makes a process, which is about to be started, end with this one, however this one ends.
void endWithThisProcess(QProcess& process);
