import QtQuick
import QtQuick.Layouts
import Cirrovane

// The whole picture on one page. Reading and the Tab key follow the order of the cards, in one column and in two.
PremiumTabScaffold {
    id: page

    required property PageContext context
    required property AppSettings settings

    signal terminologyRequested
    // Those of one watched folder, by its identifier; of all for none.
    signal blockersRequested(folder: string)
    signal coverageRequested
    signal exportRequested

    title: "Cirrovane"
    subtitle: ""
    // The first card has the title.
    showsHeading: false
    spacing: Theme.pagePadding

    HeaderCard {
        context: page.context
        settings: page.settings
        onTerminologyRequested: page.terminologyRequested()
    }
    TrustCard {
        context: page.context
    }
    // Right below the scores, since users look up their names first.
    Repeater {
        model: page.settings.showTerminologyOnDashboard ? 1 : 0

        TerminologyCard {
        }
    }
    GridLayout {
        columns: page.isWide ? 2 : 1
        columnSpacing: page.spacing
        rowSpacing: page.spacing
        Layout.fillWidth: true

        AwarenessCard {
            context: page.context
            onCoverageRequested: page.coverageRequested()
            Layout.fillHeight: true
            Layout.preferredWidth: 1
        }
        BlockersCard {
            context: page.context
            onAllRequested: page.blockersRequested("")
            Layout.fillHeight: true
            Layout.preferredWidth: 1
        }
        ActionsCard {
            context: page.context
            Layout.fillHeight: true
            Layout.preferredWidth: 1
        }
        WatchlistCard {
            context: page.context
            onBlockersRequested: folder => page.blockersRequested(folder)
            Layout.fillHeight: true
            Layout.preferredWidth: 1
        }
    }
    TimelineCard {
        onExportRequested: page.exportRequested()
        context: page.context
    }
}
