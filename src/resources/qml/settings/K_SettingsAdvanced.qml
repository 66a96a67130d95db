K_SettingsPage {
    K_SettingOnOff {
        objectName: "forceopengl"
        label: qsTr("force opengl")
        hint: qsTr("Force to run the software with OpenGL graphics")
        key: "application/advanced/forceopengl"
    }
    K_SettingOnOff {
        objectName: "sharedmemory"
        label: qsTr("shared memory")
        hint: qsTr("Activate the shared memory mechanism to use the software as a client")
        key: "application/advanced/sharedmemory"
    }
}
