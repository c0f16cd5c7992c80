import QtQuick
import QtTest
import Tinkra

TestCase {
    name: "Theme"

    function test_has_the_palette_data() {
        return [
            { tag: "bg", is: Theme.bg, red: 0.957, green: 0.949, blue: 0.929 },
            { tag: "surface", is: Theme.surface, red: 1, green: 1, blue: 1 },
            { tag: "surfaceStrong", is: Theme.surfaceStrong, red: 0.929, green: 0.918, blue: 0.898 },
            { tag: "stroke", is: Theme.stroke, red: 0.886, green: 0.871, blue: 0.843 },
            { tag: "textPrimary", is: Theme.textPrimary, red: 0.105, green: 0.098, blue: 0.09 },
            { tag: "textSecondary", is: Theme.textSecondary, red: 0.42, green: 0.404, blue: 0.376 },
            { tag: "textTertiary", is: Theme.textTertiary, red: 0.604, green: 0.584, blue: 0.549 },
            { tag: "accent", is: Theme.accent, red: 0.788, green: 0.357, blue: 0.294 },
            { tag: "accent2", is: Theme.accent2, red: 0.878, green: 0.478, blue: 0.373 },
            { tag: "positive", is: Theme.positive, red: 0.243, green: 0.706, blue: 0.451 },
            { tag: "warning", is: Theme.warning, red: 0.851, green: 0.553, blue: 0.18 },
        ];
    }

    // A colour holds 16 bits a component.
    function test_has_the_palette(row) {
        fuzzyCompare(row.is.r, row.red, 1 / 65535);
        fuzzyCompare(row.is.g, row.green, 1 / 65535);
        fuzzyCompare(row.is.b, row.blue, 1 / 65535);
        compare(row.is.a, 1);
    }
}
