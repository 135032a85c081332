// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "translation/translated.h"

/// What `--help` prints, in at most 80 columns, also when it is translated. The manual page says the same at
/// length.
namespace sprig::terminal {

inline constexpr const char* browseHelp =
    toTranslate(R"help(sprig - new files from templates, where you are working

Usage:
  sprig [FOLDER]        pick a template from the menu; the file is created in
                        FOLDER (default: the current folder)
  sprig FILE...         the same beside the first FILE
  sprig list [--json] [FOLDER]             what the menu holds
  sprig new TEMPLATE [NAME] [--in FOLDER]  create a file without questions
  sprig detect [FOLDER]                    the project types of a folder
  sprig config path | init | check [FILE]  the configuration file
  sprig template list | show | add | ...   the templates in it
  sprig undo [--list]                      take the newest file back

Options:
  -v, --verbose         show log lines on standard error as well
  -h, --help            this text; "sprig COMMAND --help" tells more
      --version         the version
      --                what follows are names, not options or commands

Standard output gets the path of the created file and nothing else.

Examples:
  sprig                               ask everything, here
  $EDITOR "$(sprig)"                  ... and edit the new file
  $EDITOR "$(sprig new 'Meeting Notes')"
  sprig new builtin-python tool --in ~/bin
  sprig config init                   write the built-in templates to a file

Exit status: 0 done, 1 cancelled or nothing to undo, 2 wrong use, 3 failed.
)help");

inline constexpr const char* listHelp = toTranslate(R"help(Usage: sprig list [--json | --titles] [FOLDER]

Prints the menu of FOLDER (default: the current folder): the templates with
their ids, by either of which "sprig new" knows them.

Options:
      --json     the whole menu as one line of JSON
      --titles   only the names of the templates, one a line
  -v, --verbose  show log lines on standard error as well
  -h, --help     this text

Examples:
  sprig list
  sprig list --json | jq -r '.items[].title'
)help");

inline constexpr const char* newHelp =
    toTranslate(R"help(Usage: sprig new TEMPLATE [NAME] [--in FOLDER] [--dry-run]

Creates a file from TEMPLATE (an id or a name) without asking. The file is
called NAME, completed with the template's extension; without NAME, as the
template suggests. A taken name gets a number. Prints the file's path.

Options:
      --in FOLDER  where the file goes (default: the current folder)
      --dry-run    only print the path that the file would have
      --           what follows are names, even if they begin with "-"
  -v, --verbose    show log lines on standard error as well
  -h, --help       this text

Examples:
  sprig new 'Meeting Notes'
  sprig new builtin-tsx Button --in src/components
  sprig new 'Plain Text' -- -draft-
)help");

inline constexpr const char* detectHelp = toTranslate(R"help(Usage: sprig detect [FOLDER]

Prints the kinds of software project FOLDER (default: the current folder)
belongs to, one a line, sorted; nothing when there are none. Marker files such
as "package.json" or "Cargo.toml" tell, in the folder and up to three above it.

Options:
  -v, --verbose  show log lines on standard error as well
  -h, --help     this text

Example:
  sprig detect ~/projects/site
)help");

inline constexpr const char* configHelp = toTranslate(R"help(Usage: sprig config path
       sprig config init
       sprig config check [FILE]

  path   prints where the configuration file in force is looked for
  init   writes the built-in templates and settings as a first file to edit,
         never over an existing one, and prints its path
  check  reads FILE (default: the file in force; "-" is standard input) and says
         how many templates it has, or what is wrong with it and where
         (status 3); warns of what hardly does what it was meant to

Options:
  -v, --verbose  show log lines on standard error as well
  -h, --help     this text

Examples:
  $EDITOR "$(sprig config init)"
  sprig config check && sprig list
)help");

inline constexpr const char* templateHelp = toTranslate(R"help(Usage: sprig template [list] [--titles]
       sprig template show | edit TEMPLATE
       sprig template add FILE [--name NAME]
       sprig template import [FOLDER]
       sprig template export TEMPLATE... > FILE.sprig-template
       sprig template enable | disable | remove TEMPLATE...
       sprig template move TEMPLATE POSITION

Shows and changes the templates in the configuration file, disabled ones
included. TEMPLATE is an id or a name. Everything else in the file stays as it
is written there; the menus of file managers follow at once.

  list     the names of all templates with their ids, in the menu's order
  show     TEMPLATE as it stands in the file
  add      a new template, at the end, whose files are copies of FILE, or the
           templates in a FILE.sprig-template; prints their ids
  import   the files in FOLDER (default: where other file managers look for
           templates), again: what has changed in them since
  export   prints templates to share
  edit     TEMPLATE as text, in $VISUAL or $EDITOR; checked before it is saved
  enable   puts templates into the menu
  disable  keeps them out of it
  move     TEMPLATE to POSITION among all templates, 1 being the first
  remove   takes templates out of the file

Options:
      --name NAME  what the new template is called (default: as FILE is)
      --titles     list only the names, one a line
  -v, --verbose    show log lines on standard error as well
  -h, --help       this text

The five last documents that were changed are kept in ~/.local/state/sprig.

Examples:
  sprig template add ~/Letterhead.odt --name Letter
  sprig template disable 'Excel Spreadsheet' 'Word Document'
)help");

inline constexpr const char* undoHelp = toTranslate(R"help(Usage: sprig undo
       sprig undo --list

Moves the file that was created last, here or in a file manager, to the trash
and prints its path. A file that has been changed since stays. After an undo,
the next one takes back the creation before; the last 20 are remembered.

Options:
      --list     shows what can be undone, the newest first
  -v, --verbose  show log lines on standard error as well
  -h, --help     this text

Where there is no trash, the untouched file is removed. Exit status 1: there
is nothing to undo.
)help");

}  // namespace sprig::terminal
