import QtQuick 2.9
import QtTest 1.2
import com.vedra.kontrols 1.0
import "qrc:/QmlLib/themes/js/VedraIcons.js" as VedraIcons

// The theme engine as scene files see it: values, styles by class name, a live change of theme.
Item {
    id: root

    width: 400
    height: 300

    Item { id: plain }
    ComboBox { id: combo; model: ["a"] }
    Button { id: button; text: "text" }
    Button { id: imageButton; Theme.classnames: ["imageonly"] }
    Button { id: unknownButton; Theme.classnames: ["nonesuch"] }
    SignalSpy { id: currentSpy; target: ThemeManager; signalName: "currentChanged" }

    TestCase {
        name: "Theme"
        when: windowShown

        function init() {
            ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Orvex Dark")
            currentSpy.clear()
        }

        function test_values_data() {
            return [
                { tag: "Orvex Dark", folder: ":/QmlLib/themes/orvex",
                  colors: ["#ffffff", "#231f20", "#262626"], font: [14, Font.Light, Font.MixedCase] },
                { tag: "Orvex Light", folder: "qrc:/QmlLib/themes/orvex",
                  colors: ["#141414", "#ffffff", "#e1e1e1"], font: [14, Font.Light, Font.MixedCase] },
                { tag: "Orvex LND", folder: ":/",
                  colors: ["#ffffff", "#231f20", "#262626"], font: [14, Font.Normal, Font.AllUppercase] },
                { tag: "Default", folder: ":/QmlLib/themes/default",
                  colors: ["#ffffff", "#222222", "#222222"], font: [12, Font.Normal, Font.MixedCase] }
            ]
        }

        function test_values(data) {
            ThemeManager.loadThemes(data.folder, data.tag)
            compare(ThemeManager.current.title, data.tag)
            compare([plain.Theme.colors.foreground.toString(), plain.Theme.colors.background.toString(),
                     combo.Theme.colors.background.toString()], data.colors)
            var fonts = plain.Theme.fonts
            compare([fonts.mainFont.pointSize / fonts.fontFactor, fonts.mainFont.weight,
                     fonts.mainFont.capitalization], data.font)
        }

        function test_everyStyleFileCompiles() {
            var styles = ["ButtonStyle", "ButtonStyle_imageonly", "CheckBoxStyle", "ComboBoxStyle",
                          "ScrollViewStyle", "ScrollViewStyle_omni", "TextFieldStyle",
                          "TextFieldStyle_title", "ToolButtonStyle", "BusyIndicatorStyle"]
            for (var i = 0; i < styles.length; ++i) {
                var file = ThemeManager.current.getStyle(styles[i], [])
                verify(file !== null, styles[i])
                var component = Qt.createComponent(file)
                compare(component.status, Component.Ready, component.errorString())
            }
        }

        function test_controlsTakeTheStyleOfTheirClassAndFallBackToTheirOwn() {
            verify(button.style !== button.defaultStyle)
            compare(imageButton.__style.padding.left, 0)
            compare(unknownButton.__style.padding.left, button.__style.padding.left)
            ThemeManager.loadThemes(":/QmlLib/themes/default", "Default")
            compare(button.style, button.defaultStyle)
        }

        function test_stylesOutliveTheCollectionOfGarbage() {
            for (var i = 0; i < 3; ++i) {
                gc()
                wait(0)
            }
            verify(button.style !== null)
            button.enabled = false // asks the style's bindings again
            button.enabled = true
            verify(button.__panel !== null && button.__panel.width > 0)
        }

        function test_aChangeOfThemeIsToldOnceAndSeenByBindings() {
            var color = button.__style.control.Theme.colors.foreground
            ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Orvex Light")
            compare(currentSpy.count, 1)
            verify(!Qt.colorEqual(button.Theme.colors.foreground, color))
        }

        function test_classnamesAreWritable() {
            compare(plain.Theme.hasClassname("light"), false)
            plain.Theme.classnames = ["light", "ddleft"]
            compare(plain.Theme.hasClassname("light"), true)
            compare(plain.Theme.hasClassname("dark"), false)
            verify(plain.Theme.getStyle("ButtonStyle", ["imageonly"]).toString().indexOf("_imageonly") > 0)
            compare(plain.Theme.getStyle("SliderStyle", undefined), null)
            button.Theme.classnames = ["imageonly"]
            compare(button.__style.padding.left, 0)
            button.Theme.classnames = []
            plain.Theme.classnames = []
        }

        function test_anUnknownTitleKeepsTheThemeInForce() {
            ignoreWarning("There is no theme \"Nobody\" in :/QmlLib/themes/orvex")
            ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Nobody")
            compare(ThemeManager.current.title, "Orvex Dark")
            compare(currentSpy.count, 0)
        }

        FontMetrics { id: barlow; font.family: "Barlow" }
        FontMetrics { id: dinText; font: plain.Theme.fonts.mainFont }
        FontMetrics { id: icons; font.family: "VedraIcons"; font.pixelSize: 100 }

        function test_bundledFontsStandInForTheNamedFamilies() {
            compare(plain.Theme.fonts.mainFont.family, "PF DinText Pro")
            barlow.font = Qt.font({ family: "Barlow", pointSize: 14, weight: Font.Light })
            compare(dinText.advanceWidth("Orbilens Player"), barlow.advanceWidth("Orbilens Player"))
            barlow.font = Qt.font({ family: "Barlow", pointSize: 14, weight: Font.Bold })
            verify(dinText.advanceWidth("Orbilens Player") < barlow.advanceWidth("Orbilens Player"))
        }

        function test_everyIconStandsInTheIconFont() {
            var names = ["Add", "Back", "Browse", "Cameras", "Checkbox_empty", "Checkbox_filled",
                         "Color", "Correction", "Delete_Copy", "Drag_n_Drop", "Edit", "Emergency",
                         "Exposure", "Horizon", "Import", "Luminosity", "Move", "Patch",
                         "Start_broadcasting", "Stitching", "Stop_broadcasting", "Unroll", "Wait"]
            for (var i = 0; i < names.length; ++i) {
                compare(VedraIcons[names[i]].charCodeAt(0), 0xe900 + i, names[i])
                // Ink inside a square of the font's own size; a missing glyph's box is narrower.
                fuzzyCompare(icons.advanceWidth(VedraIcons[names[i]]), 100, 0.5, names[i])
                verify(icons.tightBoundingRect(VedraIcons[names[i]]).width > 30, names[i])
            }
        }
    }
}
