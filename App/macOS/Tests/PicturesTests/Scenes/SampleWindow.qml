import QtQuick
import Tinkra

/// The main window as it opens.
MainWindowView {
    id: root

    width: 880
    height: 640
    now: (root.model as SampleModel)?.now ?? 0
}
