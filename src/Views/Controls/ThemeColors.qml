import QtQuick

/// A palette by roles; `dark` chooses between the two variants.
QtObject {
    property bool dark: false

    readonly property color chrome: dark ? "#151818" : "#F1F3F3"
    readonly property color separator: dark ? "#2B3031" : "#DCE1E1"
    readonly property color table: dark ? "#1B1E1F" : "#FFFFFF"
    readonly property color alternate: dark ? "#1F2223" : "#F8FAFA"
    readonly property color hover: dark ? "#272B2C" : "#EEF2F1"
    readonly property color sidebarHover: dark ? "#1E2223" : "#E7EBEB"
    readonly property color selectedActive: dark ? "#1D443D" : "#D3EBE5"
    readonly property color selectedInactive: dark ? "#2E3435" : "#E3E8E8"
    readonly property color text: dark ? "#ECEFEF" : "#1A1E1F"
    readonly property color text2: dark ? "#A2ACAD" : "#596264"
    readonly property color placeholder: dark ? "#8D9798" : "#697274"
    readonly property color disabled: dark ? "#5C6566" : "#A5ADAE"
    readonly property color accent: dark ? "#56CFB7" : "#087162"
    readonly property color focus: dark ? "#56CFB7" : "#087162"
    readonly property color field: dark ? "#232728" : "#FFFFFF"
    readonly property color fieldBorder: dark ? "#3A4142" : "#C9D0D0"
    readonly property color button: dark ? "#2B3031" : "#FFFFFF"
    readonly property color buttonHover: dark ? "#343A3B" : "#F1F4F4"
    readonly property color buttonPressed: dark ? "#232829" : "#E3E8E8"
    readonly property color buttonBorder: dark ? "#3F4748" : "#C9D0D0"
    readonly property color groove: dark ? "#3A4142" : "#D3DADA"
    readonly property color handle: dark ? "#ECEFEF" : "#FFFFFF"
    readonly property color handleBorder: dark ? "#ECEFEF" : "#AEB8B8"
    readonly property color bar: dark ? "#1E2223" : "#F6F8F8"
    readonly property color menu: dark ? "#25292A" : "#FFFFFF"
    readonly property color menuBorder: dark ? "#3A4142" : "#D3DADA"
    readonly property color menuHover: dark ? "#26453F" : "#E6F1EE"
    readonly property color destructive: dark ? "#FF8A86" : "#BE2F38"
    readonly property color tip: dark ? "#3A4142" : "#2A2F30"
    readonly property color tipText: dark ? "#ECEFEF" : "#FFFFFF"
    readonly property color scroll: dark ? "#ECEFEF" : "#1A1E1F"
}
