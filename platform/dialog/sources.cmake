# The dialog part of the platform's target, relative to platform/.
set(PLATFORM_DIALOG_SOURCES
    dialog/Button.cpp
    dialog/Controls.cpp
    dialog/DialogMaking.cpp
    dialog/DialogState.cpp
    dialog/ListBox.cpp
    dialog/ListItems.cpp
    dialog/ModalLoop.cpp
    dialog/Static.cpp
    dialog/MessageBoxDialog.cpp
    dialog/TextSize.cpp
    dialog/UnseenBox.cpp
    dialog/dialogKeys.cpp
    dialog/messageBox.cpp
    dialog/resources.cpp
    dialog/systemMenu.cpp)
