# Where each file is compiled by itself, half of its time goes to the headers of Qt and of the standard library. Those
# that many files include are compiled once: in the lowest room for the files without windows, in the lowest one with
# windows for the others. A build of one file a room has no use for them; nor can the tests, which are never optimised,
# share them with rooms that are.
if(NOT CMAKE_UNITY_BUILD AND CMAKE_BUILD_TYPE STREQUAL Debug)
    set(ORLO_COMMON_HEADERS ON)
endif()
if(ORLO_COMMON_HEADERS AND CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache$")
    # ccache declines them unless told that neither macros nor time count in them.
    list(PREPEND CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros)
endif()

set(core_headers <QDateTime> <QDir> <QFile> <QFileInfo> <QHash> <QRegularExpression> <QStringList> <QTemporaryDir>
    <algorithm> <array> <functional> <memory> <optional> <vector>)
set(screen_headers ${core_headers} <QAction> <QApplication> <QComboBox> <QDialog> <QHeaderView> <QKeyEvent> <QLabel>
    <QLineEdit> <QMainWindow> <QMessageBox> <QPainter> <QPointer> <QPushButton> <QScreen> <QScrollBar> <QTabWidget>
    <QTableView> <QTimer>)

# orlo_common_headers(TARGET core|screen): the target's files have them before their first line.
function(orlo_common_headers target kind)
    set(lowest_core orlo_platform)
    set(lowest_screen orlo_widgets)
    if(NOT ORLO_COMMON_HEADERS)
        return()
    elseif(target STREQUAL lowest_${kind})
        target_precompile_headers(${target} PRIVATE ${${kind}_headers})
    else()
        target_precompile_headers(${target} REUSE_FROM ${lowest_${kind}})
    endif()
endfunction()
