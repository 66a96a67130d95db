import QtQuick 2.9
import QtTest 1.2
import "qrc:/qml/lib.js" as Lib

TestCase {
    name: "lib"

    function test_formatTime_data() {
        return [{ ms: 0, text: "00:00" }, { ms: 499, text: "00:00" }, { ms: 59500, text: "01:00" },
                { ms: 61000, text: "01:01" }, { ms: 3599499, text: "59:59" },
                { ms: 3600000, text: "1:00:00" }, { ms: 36610000, text: "10:10:10" }]
    }
    function test_formatTime(row) { compare(Lib.formatTime(row.ms), row.text) }

    function test_trimNumber() {
        compare(Lib.trimNumber(1.23456, 100), 1.23)
        compare(Lib.trimNumber(-1.235, 10), -1.2)
        compare(Lib.trimNumber(0.123456), 0.12346)
    }
}
