// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/BuiltinTemplates.h"

#include "translation/translated.h"

namespace sprig {

namespace {

constexpr const char* meetingNotes = R"(# Meeting Notes — {{date}}

**Date:** {{date}} {{time}}
**Attendees:**
**Agenda:**

---

## Discussion


## Action Items
- [ ] 
)";

constexpr const char* toDoList = R"(TO-DO LIST — {{date}}
=======================

[ ] High priority task
[ ] Follow-up item
[ ] Quick check-in

Notes:
)";

constexpr const char* reactComponent = R"(import React from 'react';

export interface {{name}}Props {
  children?: React.ReactNode;
}

export const {{name}}: React.FC<{{name}}Props> = ({ children }) => {
  return (
    <div>
      {children}
    </div>
  );
};
)";

constexpr const char* typeScriptModule = R"(// {{filename}}

export function init() {
  // Implementation
}
)";

constexpr const char* pythonScript = R"("""{{filename}}"""

def main() -> None:
    pass

if __name__ == "__main__":
    main()
)";

AppSettingsItem builtinSettings() {
  return {
      .launchAtLogin = false,
      .showInFinder = true,
      .defaultBehavior = "prompt",
      .showFavoritesFirst = true,
      .showCategories = false,
      .maxVisibleTemplates = 10,
      .projectDetection = true,
      .notificationsEnabled = true,
      .anonymousAnalytics = false,
  };
}

/// What the user is offered first among the built-ins.
enum class Favorite { no, yes };
enum class Input { optional, required };

struct Row {
  const char* id;
  const char* name;
  const char* extensionName;
  const char* filenamePattern;
  const char* content;
  const char* icon;
  const char* category;
  Favorite favorite = Favorite::no;
  Input input = Input::optional;
  std::vector<std::string> projectTypes = {};
};

TemplateItem builtinTemplate(const Row& row) {
  TemplateItem item;
  item.id = row.id;
  item.name = row.name;
  item.extensionName = row.extensionName;
  item.filenamePattern = row.filenamePattern;
  item.content = row.content;
  item.icon = row.icon;
  item.category = row.category;
  item.enabled = true;
  item.favorite = row.favorite == Favorite::yes;
  item.requiresInput = row.input == Input::required;
  item.isBuiltin = true;
  if (!row.projectTypes.empty()) item.scope = TemplateScope{row.projectTypes};
  return item;
}

}  // namespace

std::string displayName(const std::string& id, const std::string& name) {
  return id.starts_with("builtin-") ? translatedName("template", name) : name;
}

AppConfigItem defaultFallbackConfig() {
  constexpr auto codeIcon = "chevron.left.forwardslash.chevron.right";
  const Row rows[] = {
      {"builtin-markdown", toTranslateName("template", "Markdown Note"), ".md", "Untitled.md",
       "# {{filename}}\n", "doc.text", "writing", Favorite::yes},
      {"builtin-plain-text", toTranslateName("template", "Plain Text"), ".txt", "Untitled.txt", "",
       "doc.plaintext", "writing", Favorite::yes},
      {"builtin-meeting-notes", toTranslateName("template", "Meeting Notes"), ".md",
       "Meeting Notes {{date}}.md", meetingNotes, "note.text", "writing"},
      {"builtin-todo", toTranslateName("template", "Daily To-Do List"), ".txt", "To-Do {{date}}.txt",
       toDoList, "checklist", "writing"},
      {"builtin-tsx",
       toTranslateName("template", "React Component"),
       ".tsx",
       "{{name}}.tsx",
       reactComponent,
       codeIcon,
       "developer",
       Favorite::yes,
       Input::required,
       {"react", "nextjs", "web"}},
      {"builtin-typescript",
       toTranslateName("template", "TypeScript Module"),
       ".ts",
       "Untitled.ts",
       typeScriptModule,
       codeIcon,
       "developer",
       Favorite::no,
       Input::optional,
       {"typescript", "node"}},
      {"builtin-python",
       toTranslateName("template", "Python Script"),
       ".py",
       "Untitled.py",
       pythonScript,
       "terminal",
       "developer",
       Favorite::no,
       Input::optional,
       {"python"}},
      {"builtin-json", toTranslateName("template", "JSON File"), ".json", "Untitled.json", "{\n  \n}\n",
       "curlybraces", "developer"},
      {"builtin-env", toTranslateName("template", ".env Config"), ".env", ".env", "# Environment Variables\n",
       "slider.horizontal.3", "developer"},
      {"builtin-docx", toTranslateName("template", "Word Document"), ".docx", "Untitled.docx", "", "doc.text",
       "office"},
      {"builtin-xlsx", toTranslateName("template", "Excel Spreadsheet"), ".xlsx", "Untitled.xlsx", "",
       "tablecells", "finance"},
  };
  AppConfigItem config;
  config.version = 1;
  config.settings = builtinSettings();
  for (const Row& row : rows) config.templates.push_back(builtinTemplate(row));
  return config;
}

}  // namespace sprig
