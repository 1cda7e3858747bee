# The widget part of the host: windows, progress window, item tables.
target_sources(Host PRIVATE
    app/SDIApplication.cpp
    app/SDIApplication.h
    delegates/CItemDelegate.cpp
    delegates/CItemDelegate.h
    delegates/CProjectItemModel.cpp
    delegates/CProjectItemModel.h
    delegates/IDelegateCreator.h
    delegates/ItemDelegateFactory.cpp
    delegates/ItemDelegateFactory.h
    process/CProcessMonitor.cpp
    process/CProcessMonitor.h
    process/IProcessMonitor.h
    process/JournalBrowser.cpp
    process/JournalBrowser.h
    process/JournalWriter.cpp
    process/JournalWriter.h
    process/OrderedMonitorProxy.cpp
    process/OrderedMonitorProxy.h
    process/ProgressImplementation.h
    window/Display.cpp
    window/Display.h
    window/ProjectWindow.cpp
    window/ProjectWindow.h
    window/ProjectWindowGUIExtension.cpp
    window/ProjectWindowGUIExtension.h)
