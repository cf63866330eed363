import QtQuick
import QtTest
import Cirrovane

// Tests of one component, none of which may draw a warning from it.
TestCase {
    id: testCase

    when: windowShown

    function init() {
        failOnWarning(/./);
    }

    // The first item below another that meets a condition; null when there is none.
    function findItem(item, isMet) {
        return findItems(item, isMet)[0] ?? null;
    }

    // Every item below another that meets a condition.
    function findItems(item, isMet) {
        let found = [];
        for (let index = 0; index < item.children.length; ++index) {
            const child = item.children[index];
            found = found.concat(isMet(child) ? [child] : [], findItems(child, isMet));
        }
        return found;
    }

    // What is not seen and has this property.
    function findResource(item, property) {
        for (let index = 0; index < item.resources.length; ++index) {
            if (property in item.resources[index]) {
                return item.resources[index];
            }
        }
        return null;
    }

    // The ring of a control that the keyboard acts on; null when it is out of sight.
    function visibleRing(item) {
        return findItem(item, child => child instanceof FocusRing && child.visible);
    }
}
