// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/ViewSelection.h"

#include <optional>
#include <utility>
#include <vector>

#include "filemanagers/client/AtBorder.h"
#include "filemanagers/gtk3/GtkViews.h"
#include "filemanagers/gtk3/IconContainer.h"
#include "wire/Pointers.h"

namespace sprig::filemanagers {

namespace {

using State = FileSelection::State;
using wire::ObjectPointer;

struct PathReleaser {
  void operator()(GtkTreePath* path) const { gtk_tree_path_free(path); }
};

std::string parentOf(const std::string& uri) { return uri.substr(0, uri.rfind('/')); }

/// The column of a model that holds file objects; nothing when there is none.
std::optional<int> fileColumn(GtkTreeModel* model, GType fileType) {
  for (int column = 0; column < gtk_tree_model_get_n_columns(model); ++column) {
    if (g_type_is_a(gtk_tree_model_get_column_type(model, column), fileType) != FALSE) return column;
  }
  return std::nullopt;
}

/// A look through the rows of a model for a file.
class RowSearch {
 public:
  RowSearch(GtkTreeModel* model, const FileObjects& fileObjects, const std::string& wantedUri)
      : objects(fileObjects), uri(wantedUri), column(fileColumn(model, fileObjects.type)) {
    if (column) gtk_tree_model_foreach(model, look, this);
  }

  bool isFound() const { return file != nullptr; }
  GObject* foundFile() const { return file.get(); }
  GtkTreePath* foundPath() const { return path.get(); }

  /// Of a file that was not found: it may yet come where its neighbours are, or where there is nothing.
  State stateWithout() const {
    const bool isItsFolder = folder.empty() || folder == parentOf(uri);
    return column && isItsFolder ? State::notYet : State::impossible;
  }

 private:
  static gboolean look(GtkTreeModel* model, GtkTreePath* path, GtkTreeIter* row, void* self) noexcept {
    return atBorder([&] { return static_cast<RowSearch*>(self)->lookAt(model, path, row); }) ? TRUE : FALSE;
  }

  bool lookAt(GtkTreeModel* model, GtkTreePath* rowPath, GtkTreeIter* row) {
    GObject* object = nullptr;
    gtk_tree_model_get(model, row, *column, &object, -1);
    ObjectPointer<GObject> candidate(object);
    if (!candidate) return false;
    const auto candidateUri = objects.uriOf(object);
    if (folder.empty()) folder = parentOf(candidateUri);
    if (candidateUri != uri) return false;
    file = std::move(candidate);
    path.reset(gtk_tree_path_copy(rowPath));
    return true;
  }

  const FileObjects& objects;
  const std::string& uri;
  const std::optional<int> column;
  std::string folder;
  ObjectPointer<GObject> file;
  std::unique_ptr<GtkTreePath, PathReleaser> path;
};

/// The model of one of Thunar's views, whose property selects and scrolls whatever the kind of view; null for
/// other widgets.
ObjectPointer<GtkTreeModel> thunarModel(GtkWidget* view) {
  if (!isNamed(view, "ThunarStandardView") || !GTK_IS_BIN(view)) return nullptr;
  auto* child = gtk_bin_get_child(GTK_BIN(view));
  const auto listType = g_type_from_name("ThunarxFileInfoList");
  if (!child || listType == G_TYPE_INVALID || !hasProperty(view, "selected-files", listType) ||
      !hasProperty(child, "model", GTK_TYPE_TREE_MODEL)) {
    return nullptr;
  }
  GtkTreeModel* model = nullptr;
  g_object_get(child, "model", &model, nullptr);
  return ObjectPointer<GtkTreeModel>(model);
}

void selectInThunar(GtkWidget* view, const RowSearch& search) {
  GList files{search.foundFile(), nullptr, nullptr};
  g_object_set(view, "selected-files", &files, nullptr);
  gtk_widget_grab_focus(gtk_bin_get_child(GTK_BIN(view)));
}

/// Whether a widget is the list of one of Nemo's or Caja's views, and not a side pane's.
bool isFileList(GtkWidget* widget) {
  if (!GTK_IS_TREE_VIEW(widget) || !gtk_tree_view_get_model(GTK_TREE_VIEW(widget))) return false;
  for (auto* around = widget; around; around = gtk_widget_get_parent(around)) {
    if (isNamed(around, "NemoView") || isNamed(around, "FMDirectoryView")) return true;
  }
  return false;
}

void selectInList(GtkTreeView* list, const RowSearch& search) {
  gtk_tree_selection_unselect_all(gtk_tree_view_get_selection(list));
  gtk_tree_view_set_cursor(list, search.foundPath(), nullptr, FALSE);
  gtk_tree_view_scroll_to_cell(list, search.foundPath(), nullptr, FALSE, 0, 0);
  gtk_widget_grab_focus(GTK_WIDGET(list));
}

class ViewSelection final : public FileSelection {
 public:
  ViewSelection(FileObjects fileObjects, FileToSelect fileToSelect, std::function<void()> tellChange)
      : objects(fileObjects), file(std::move(fileToSelect)), changed(std::move(tellChange)) {}

  ~ViewSelection() override { forgetSources(); }
  ViewSelection(const ViewSelection&) = delete;
  ViewSelection& operator=(const ViewSelection&) = delete;

  State attempt() override {
    forgetSources();
    auto result = State::impossible;
    for (auto* window : windowsOf(file.parentWindow)) {
      for (auto* widget : widgetsOn(window)) {
        const auto state = attemptIn(widget);
        if (state == State::selected) return state;
        if (state == State::notYet) result = state;
      }
    }
    return result;
  }

 private:
  /// What tells that a view has changed.
  struct Source {
    ObjectPointer<GObject> object;
    gulong handler;
  };

  State attemptIn(GtkWidget* widget) {
    if (const auto model = thunarModel(widget)) {
      return attemptWith(model.get(), [&](const RowSearch& search) { selectInThunar(widget, search); });
    }
    if (isFileList(widget)) {
      auto* list = GTK_TREE_VIEW(widget);
      return attemptWith(gtk_tree_view_get_model(list),
                         [&](const RowSearch& search) { selectInList(list, search); });
    }
    if (!isIconContainer(widget)) return State::impossible;
    const auto state = selectIcon(widget, file.uri);
    if (state == State::notYet) awaitChange(widget, "icon-added");
    return state;
  }

  template <typename Select>
  State attemptWith(GtkTreeModel* model, Select select) {
    const RowSearch search(model, objects, file.uri);
    if (!search.isFound()) {
      const auto state = search.stateWithout();
      if (state == State::notYet) awaitChange(model, "row-inserted");
      return state;
    }
    select(search);
    return State::selected;
  }

  void awaitChange(void* object, const char* signal) {
    if (g_signal_lookup(signal, G_OBJECT_TYPE(object)) == 0) return;
    const auto handler = g_signal_connect_swapped(object, signal, G_CALLBACK(sourceChanged), this);
    sources.push_back({ObjectPointer<GObject>(G_OBJECT(g_object_ref(object))), handler});
  }

  static void sourceChanged(ViewSelection* self) noexcept { atBorder(self->changed); }

  void forgetSources() {
    for (const auto& source : sources) g_signal_handler_disconnect(source.object.get(), source.handler);
    sources.clear();
  }

  const FileObjects objects;
  const FileToSelect file;
  const std::function<void()> changed;
  std::vector<Source> sources;
};

}  // namespace

NewFileSelection selectionInViews(FileObjects objects) {
  return [objects](FileToSelect file, std::function<void()> changed) {
    return std::make_unique<ViewSelection>(objects, std::move(file), std::move(changed));
  };
}

}  // namespace sprig::filemanagers
