// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/ViewSelection.h"

#include <optional>
#include <utility>

#include "filemanagers/client/LocationUri.h"
#include "filemanagers/client/guardCallback.h"
#include "filemanagers/gtk3/GtkViews.h"
#include "filemanagers/gtk3/IconContainer.h"
#include "filemanagers/gtk3/WindowFacts.h"
#include "wire/Pointers.h"

namespace sprig::filemanagers {

namespace {

using State = FileSelection::State;
using wire::ObjectPointer;

struct PathReleaser {
  void operator()(GtkTreePath* path) const { gtk_tree_path_free(path); }
};

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

  /// Whether the model is one that holds files.
  bool isPossible() const { return column.has_value(); }
  bool isFound() const { return file != nullptr; }
  GObject* foundFile() const { return file.get(); }
  GtkTreePath* foundPath() const { return path.get(); }

  bool hasRows() const { return rowsSeen; }
  /// Whether another file of the same folder is there, as it is below an expanded folder, too.
  bool hasNeighbours() const { return neighboursSeen; }

 private:
  static gboolean look(GtkTreeModel* model, GtkTreePath* path, GtkTreeIter* row, void* self) noexcept {
    return guardCallback([&] { return static_cast<RowSearch*>(self)->lookAt(model, path, row); }) ? TRUE
                                                                                                  : FALSE;
  }

  bool lookAt(GtkTreeModel* model, GtkTreePath* rowPath, GtkTreeIter* row) {
    GObject* object = nullptr;
    gtk_tree_model_get(model, row, *column, &object, -1);
    ObjectPointer<GObject> candidate(object);
    if (!candidate) return false;
    const auto candidateUri = objects.uriOf(object);
    rowsSeen = true;
    neighboursSeen = neighboursSeen || folderOf(candidateUri) == folderOf(uri);
    if (candidateUri != uri) return false;
    file = std::move(candidate);
    path.reset(gtk_tree_path_copy(rowPath));
    return true;
  }

  const FileObjects& objects;
  const std::string& uri;
  const std::optional<int> column;
  bool rowsSeen = false;
  bool neighboursSeen = false;
  ObjectPointer<GObject> file;
  std::unique_ptr<GtkTreePath, PathReleaser> path;
};

/// What a view tells beside its rows; nothing where that isn't known.
struct ViewFacts {
  /// The URI of the folder, without a slash at its end.
  std::optional<std::string> folder;
  std::optional<bool> showsHidden;
};

/// Whether a file that a view doesn't have may yet come: where its neighbours are, or where there is nothing.
bool mayCome(const std::string& uri, const RowSearch& search, const ViewFacts& view) {
  if (isHidden(uri) && !view.showsHidden.value_or(true)) return false;
  if (search.hasRows()) return search.hasNeighbours();
  return search.isPossible() && view.folder.value_or(std::string(folderOf(uri))) == folderOf(uri);
}

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

ViewFacts thunarFacts(GtkWidget* view, GtkTreeModel* model, const FileObjects& objects) {
  ViewFacts facts;
  if (hasProperty(view, "current-directory", objects.type)) {
    GObject* folder = nullptr;
    g_object_get(view, "current-directory", &folder, nullptr);
    const ObjectPointer<GObject> owned(folder);
    if (folder) facts.folder = withoutLastSlash(objects.uriOf(folder));
  }
  if (hasProperty(model, "show-hidden", G_TYPE_BOOLEAN)) {
    gboolean isShown = TRUE;
    g_object_get(model, "show-hidden", &isShown, nullptr);
    facts.showsHidden = isShown != FALSE;
  }
  return facts;
}

/// In icons, Thunar 4.20 adds to what is selected.
void unselectIcons(GtkWidget* icons) {
  GSignalQuery signal{};
  g_signal_query(g_signal_lookup("unselect-all", G_OBJECT_TYPE(icons)), &signal);
  if (signal.signal_id == 0 || signal.n_params != 0 || signal.return_type != G_TYPE_NONE) return;
  g_signal_emit(icons, signal.signal_id, 0);
}

void selectInThunar(GtkWidget* view, const RowSearch& search) {
  unselectIcons(gtk_bin_get_child(GTK_BIN(view)));
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

  ~ViewSelection() override { forgetRows(); }
  ViewSelection(const ViewSelection&) = delete;
  ViewSelection& operator=(const ViewSelection&) = delete;

  /// The first view that shows the folder is the one where the user is, also if another gets the file sooner.
  State attempt() override {
    forgetRows();
    for (auto* window : windowsOf(file.parentWindow)) {
      for (auto* widget : widgetsOn(window)) {
        const auto state = attemptIn(widget);
        if (state != State::impossible) return state;
      }
    }
    return State::impossible;
  }

 private:
  State attemptIn(GtkWidget* widget) {
    if (const auto model = thunarModel(widget)) {
      const RowSearch search(model.get(), objects, file.uri);
      if (!search.isFound())
        return stateWithout(search, model.get(), thunarFacts(widget, model.get(), objects));
      selectInThunar(widget, search);
      return State::selected;
    }
    if (isFileList(widget)) return attemptInList(GTK_TREE_VIEW(widget));
    return isIconContainer(widget) ? attemptInIcons(widget) : State::impossible;
  }

  State attemptInList(GtkTreeView* list) {
    auto* model = gtk_tree_view_get_model(list);
    const RowSearch search(model, objects, file.uri);
    if (!search.isFound()) {
      auto* widget = GTK_WIDGET(list);
      if (!isHidden(file.uri) && isOpenIn(list)) return awaitRow(model);
      return stateWithout(search, model, {locationAround(widget), showsHiddenFiles(widget)});
    }
    selectInList(list, search);
    return State::selected;
  }

  State attemptInIcons(GtkWidget* container) {
    const bool isAwaited = newIcon && newIcon->widget() == container;
    const auto state = selectIcon(container, objects, file.uri, isAwaited ? newIcon->accessible() : nullptr);
    if (state != State::notYet) return state;
    if (isHidden(file.uri) && !showsHiddenFiles(container).value_or(false)) return State::impossible;
    if (!isAwaited) newIcon = std::make_unique<NewIcon>(container, objects, file.uri, changed);
    return state;
  }

  State stateWithout(const RowSearch& search, GtkTreeModel* model, const ViewFacts& view) {
    return mayCome(file.uri, search, view) ? awaitRow(model) : State::impossible;
  }

  /// Whether the file's folder is one of those in a list, with its own files below it, or none yet.
  bool isOpenIn(GtkTreeView* list) const {
    const std::string folderUri(folderOf(file.uri));
    const RowSearch folder(gtk_tree_view_get_model(list), objects, folderUri);
    return folder.isFound() && gtk_tree_view_row_expanded(list, folder.foundPath()) != FALSE;
  }

  State awaitRow(GtkTreeModel* model) {
    awaited.reset(static_cast<GtkTreeModel*>(g_object_ref(model)));
    g_signal_connect_swapped(model, "row-inserted", G_CALLBACK(rowsChanged), this);
    // The first file in an open folder takes the row that said that there is none.
    g_signal_connect_swapped(model, "row-changed", G_CALLBACK(rowsChanged), this);
    return State::notYet;
  }

  static void rowsChanged(ViewSelection* self) noexcept { guardCallback(self->changed); }

  void forgetRows() {
    if (awaited) g_signal_handlers_disconnect_by_data(awaited.get(), this);
    awaited.reset();
  }

  const FileObjects objects;
  const FileToSelect file;
  const std::function<void()> changed;
  /// The model in which the file is awaited.
  ObjectPointer<GtkTreeModel> awaited;
  /// The same, among icons.
  std::unique_ptr<NewIcon> newIcon;
};

}  // namespace

NewFileSelection selectionInViews(FileObjects objects) {
  return [objects](FileToSelect file, std::function<void()> changed) {
    return std::make_unique<ViewSelection>(objects, std::move(file), std::move(changed));
  };
}

}  // namespace sprig::filemanagers
