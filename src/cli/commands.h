// The commands of ellwynd-cli, one source file each.
#pragma once

#include "cli/session.h"

#include <QStringList>

#include <span>

namespace ellwynd::cli {

struct Command {
    const char *name;
    /// One line for the overview.
    const char *summary;
    /// Runs the command on the words after its name; returns an exit status or throws.
    int (*run)(Session &session, const QStringList &words);
};

[[nodiscard]] std::span<const Command> commands();

int runScore(Session &session, const QStringList &words);
int runCourses(Session &session, const QStringList &words);
int runRoster(Session &session, const QStringList &words);
int runTerm(Session &session, const QStringList &words);
int runThresholds(Session &session, const QStringList &words);
int runMessage(Session &session, const QStringList &words);
int runTemplates(Session &session, const QStringList &words);
int runConnect(Session &session, const QStringList &words);
int runStatus(Session &session, const QStringList &words);
int runDisconnect(Session &session, const QStringList &words);
int runDashboard(Session &session, const QStringList &words);
int runStudent(Session &session, const QStringList &words);
int runContacted(Session &session, const QStringList &words);
int runPrivacy(Session &session, const QStringList &words);
int runDefaults(Session &session, const QStringList &words);

} // namespace ellwynd::cli
