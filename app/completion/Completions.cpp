#include "app/completion/Completions.h"

#include <QMap>

#include <QRegularExpression>

namespace vorle {

namespace {

/// What may stand at one place of a line.
struct Place {
    QStringList words = {};
    bool file = false;
};

/// What may follow a command's name: what its synopsis says, in a form that a shell can be told.
struct Line {
    QString name;
    QString summary;
    QStringList options;         ///< "--json"
    QMap<QString, Place> values; ///< of the options that take one
    QList<Place> places;         ///< of the words that are no options
};

Place placeOf(const QString &token) {
    Place place;
    for (const QString &word : token.split(u'|', Qt::SkipEmptyParts)) {
        if (word == u"FICHIER" || word == u"DOSSIER") {
            place.file = true;
        } else if (word == word.toLower()) {
            place.words += word;
        }
    }
    return place;
}

/// "[ajouter DOSSIER [--nom N] | retirer NOM]": alternatives stand between blanks, words that stand
/// for each other do not.
Line lineOf(const CompletedCommand &command) {
    Line line{command.name, command.summary, {}, {}, {}};
    for (const QString &flag : command.flags) {
        line.options += QStringLiteral("--") + flag;
    }
    for (const QString &option : command.options) {
        line.options += QStringLiteral("--") + option;
        line.values.insert(line.options.last(), {});
    }
    line.options.sort();
    static const QRegularExpression brackets(QStringLiteral("[\\[\\]]"));
    const QString synopsis = QString(command.synopsis).remove(brackets);
    for (const QString &alternative : synopsis.split(QStringLiteral(" | "))) {
        qsizetype place = 0;
        QString option;
        for (const QString &token : alternative.split(u' ', Qt::SkipEmptyParts)) {
            if (token.startsWith(u"--")) {
                option = line.values.contains(token) ? token : QString();
            } else if (!option.isEmpty()) {
                line.values.insert(std::exchange(option, {}), placeOf(token));
            } else {
                const Place found = placeOf(token);
                line.places.resize(std::max(line.places.size(), place + 1));
                line.places[place].words += found.words;
                line.places[place].file = line.places[place].file || found.file;
                ++place;
            }
        }
    }
    return line;
}

QList<Line> linesOf(const QList<CompletedCommand> &commands) {
    QList<Line> all;
    for (const CompletedCommand &command : commands) {
        all += lineOf(command);
    }
    return all;
}

QStringList namesOf(const QList<Line> &lines) {
    QStringList all{QStringLiteral("aide")};
    for (const Line &line : lines) {
        all += line.name;
    }
    return all;
}

/// Without a command.
const QStringList &aloneOptions() {
    static const QStringList all{QStringLiteral("--demo"), QStringLiteral("--help"),
                                 QStringLiteral("--hidden"), QStringLiteral("--version")};
    return all;
}

QString quoted(const QString &text) {
    return u'\'' + QString(text).replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

QString bashPlace(const Place &place) {
    QString script;
    if (!place.words.isEmpty()) {
        script += QStringLiteral("COMPREPLY=($(compgen -W %1 -- \"$cur\")); ")
                      .arg(quoted(place.words.join(u' ')));
    }
    return script + (place.file ? QStringLiteral("compopt -o default; ") : QString());
}

QString bashScript(const QList<Line> &lines) {
    QString values;
    QString options;
    QString places;
    QStringList valued;
    for (const Line &line : lines) {
        const QString &name = line.name;
        options += QStringLiteral("        %1) %2;;\n").arg(name, bashPlace({line.options}));
        for (auto value = line.values.cbegin(); value != line.values.cend(); ++value) {
            values += QStringLiteral("    %1:%2) %3return ;;\n")
                          .arg(name, value.key(), bashPlace(value.value()));
            valued += value.key();
        }
        for (qsizetype i = 0; i < line.places.size(); ++i) {
            places += QStringLiteral("    %1:%2) %3;;\n")
                          .arg(name, QString::number(i), bashPlace(line.places[i]));
        }
    }
    valued.removeDuplicates();
    return QStringLiteral(R"(_vorle() {
    local cur=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} place=0 i
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        COMPREPLY=($(compgen -W %1 -- "$cur"))
        return
    fi
    case ${COMP_WORDS[1]}:$before in
%2    esac
    if [[ $cur == -* ]]; then
        case ${COMP_WORDS[1]} in
%3        esac
        return
    fi
    for ((i = 2; i < COMP_CWORD; ++i)); do
        case ${COMP_WORDS[i]} in
        %4) ((++i)) ;;
        -*) ;;
        *) ((++place)) ;;
        esac
    done
    case ${COMP_WORDS[1]}:$place in
%5    esac
}
complete -F _vorle vorle
)")
        .arg(quoted((namesOf(lines) + aloneOptions()).join(u' ')), values, options,
             valued.join(u'|'), places);
}

/// The end of a zsh specification: what is to be typed, and what it can be.
QString zshPlace(const Place &place) {
    if (place.file) {
        return QStringLiteral(":fichier:_files");
    }
    return place.words.isEmpty() ? QStringLiteral(":valeur: ")
                                 : QStringLiteral(":valeur:(%1)").arg(place.words.join(u' '));
}

QString zshScript(const QList<Line> &lines) {
    QString described;
    QString cases;
    for (const Line &line : lines) {
        const QString &name = line.name;
        described +=
            u' ' + quoted(name + u':' + QString(line.summary).replace(u':', QStringLiteral("\\:")));
        QStringList specifications;
        for (const QString &option : line.options) {
            const auto value = line.values.constFind(option);
            specifications +=
                quoted(option + (value == line.values.cend() ? QString() : zshPlace(*value)));
        }
        for (qsizetype i = 0; i < line.places.size(); ++i) {
            specifications += quoted(QString::number(i + 1) + zshPlace(line.places[i]));
        }
        cases += QStringLiteral("%1) _arguments %2 ;;\n").arg(name, specifications.join(u' '));
    }
    return QStringLiteral(R"(#compdef vorle
local -a commands
if ((CURRENT == 2)); then
    commands=(%1)
    _describe commande commands
    [[ $words[2] == -* ]] && compadd -- %2
    return
fi
shift words
((CURRENT--))
case $words[1] in
%3esac
)")
        .arg(described.trimmed(), aloneOptions().join(u' '), cases);
}

QString fishScript(const QList<Line> &lines) {
    QString script = QStringLiteral("complete -c vorle -f\n");
    for (const QString &option : aloneOptions()) {
        script += QStringLiteral("complete -c vorle -n __fish_use_subcommand -l %1\n")
                      .arg(option.sliced(2));
    }
    for (const Line &line : lines) {
        const QString &name = line.name;
        script += QStringLiteral("complete -c vorle -n __fish_use_subcommand -a %1 -d %2\n")
                      .arg(name, quoted(line.summary));
        const QString of =
            QStringLiteral("complete -c vorle -n '__fish_seen_subcommand_from %1'").arg(name);
        for (const QString &option : line.options) {
            const auto value = line.values.constFind(option);
            script += of + QStringLiteral(" -l ") + option.sliced(2);
            if (value != line.values.cend()) {
                script += QStringLiteral(" -x");
                if (!value->words.isEmpty()) {
                    script += QStringLiteral(" -a ") + quoted(value->words.join(u' '));
                }
            }
            script += u'\n';
        }
        for (const Place &place : line.places) {
            if (!place.words.isEmpty()) {
                script += of + QStringLiteral(" -a ") + quoted(place.words.join(u' ')) + u'\n';
            }
            if (place.file) {
                script += of + QStringLiteral(" -F\n");
            }
        }
    }
    return script;
}

} // namespace

const QStringList &completedShells() {
    static const QStringList all{QStringLiteral("bash"), QStringLiteral("fish"),
                                 QStringLiteral("zsh")};
    return all;
}

std::optional<QString> completionScript(const QString &shell,
                                        const QList<CompletedCommand> &commands) {
    const QList<Line> lines = linesOf(commands);
    switch (completedShells().indexOf(shell)) {
    case 0:
        return bashScript(lines);
    case 1:
        return fishScript(lines);
    case 2:
        return zshScript(lines);
    default:
        return std::nullopt;
    }
}

} // namespace vorle
