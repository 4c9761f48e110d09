import QtQuick
import Tamsy.NowPlaying

/// A lyric line in one weight, with its shadow, optionally blurred. It is drawn into textures once, so
/// that moving it is nearly free.
Item {
    id: form

    required property string text
    required property real size
    required property int weight
    required property color ink
    required property bool blurred
    required property real shade
    property int horizontalAlignment: Text.AlignLeft
    /// The margin around the text for blur and shadow.
    readonly property int margin: 20
    /// A line that fills many screens exceeds the texture size and is drawn without effects.
    readonly property bool isLayered: GraphicsInfo.api !== GraphicsInfo.Software && height <= 2000

    Loader {
        anchors.fill: parent
        sourceComponent: form.isLayered ? layered : plain
    }
    Component {
        id: layered

        Item {
            LegibilityShadow {
                anchors.fill: sharp
                source: sharp
                strength: form.shade
                ink: form.ink.a * (form.blurred ? 0.75 : 1)
            }
            Item {
                id: sharp

                x: -form.margin
                y: -form.margin
                width: form.width + 2 * form.margin
                height: form.height + 2 * form.margin
                layer.enabled: true
                visible: !form.blurred

                LyricGlyphs {
                    x: form.margin
                    y: form.margin
                    width: form.width
                    text: form.text
                    color: form.ink
                    horizontalAlignment: form.horizontalAlignment
                    font.pixelSize: form.size
                    font.weight: form.weight
                }
            }
            ShaderEffect {
                readonly property Item source: sharp
                readonly property point texelStep: Qt.point(1 / width, 1 / height)

                anchors.fill: sharp
                visible: form.blurred
                layer.enabled: true
                fragmentShader: "qrc:/shaders/LyricBlur.frag.qsb"
            }
        }
    }
    Component {
        id: plain

        LyricGlyphs {
            text: form.text
            shade: form.shade
            carriesShade: true
            color: form.ink
            horizontalAlignment: form.horizontalAlignment
            font.pixelSize: form.size
            font.weight: form.weight
        }
    }
}
