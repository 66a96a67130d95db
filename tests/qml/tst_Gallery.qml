import QtQuick 2.9
import QtTest 1.2
import com.vedra.kontrols 1.0

// Each control of the library stands up in every theme, and a change of theme restyles it alive.
// What they look like is kept as pictures, to be looked at.
TestCase {
    id: testCase

    name: "Gallery"
    when: windowShown
    width: 1000
    height: 860
    visible: true

    Component {
        id: gallery
        Gallery { }
    }

    function test_everyControlInEveryTheme() {
        var page = createTemporaryObject(gallery, testCase)
        verify(page !== null)
        var themes = [["", "none"], ["Orvex Light", "light"], ["Orvex Dark", "dark"], ["Orvex LND", "lnd"]]
        for (var i = 0; i < themes.length; ++i) {
            if (themes[i][0] !== "") {
                ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Orvex Dark")
                ThemeManager.loadThemes(":/", themes[i][0])
                compare(ThemeManager.current.title, themes[i][0])
            }
            page.spinBox.forceActiveFocus()
            wait(300)
            gc()
            for (var j = 0; j < page.controls.children.length; ++j) {
                var control = page.controls.children[j]
                verify(control.width > 0 && control.height > 0, control.toString())
                if (control.style !== undefined)
                    verify(control.style !== null, control.toString())
            }
            grabImage(page).save(screenshotFolder + "/gallery_" + themes[i][1] + ".png")
        }
    }
}
