import QtQuick
import Kelvo

/// A page with a centred symbol, a heading and a text. The symbol and the heading are at the same place on every such page.
OnboardingPage {
    id: page

    property font headingFont: Tokens.windowTitle
    required property string body
    /// An additional line in a smaller font; may be empty.
    property string remark: ""
    default property alias symbol: symbolPlace.data

    contentHeight: texts.y + texts.height

    Item {
        id: symbolPlace

        anchors.horizontalCenter: parent.horizontalCenter
        height: 54
        width: 54
        y: 37
    }
    Column {
        id: texts

        anchors.left: parent.left
        anchors.leftMargin: Tokens.pagePadding
        anchors.right: parent.right
        anchors.rightMargin: Tokens.pagePadding
        anchors.top: symbolPlace.bottom
        anchors.topMargin: 16

        Paragraph {
            Accessible.role: Accessible.Heading
            color: Tokens.labelPrimary
            font: page.headingFont
            horizontalAlignment: Text.AlignHCenter
            lineHeight: 1.05
            objectName: "heading"
            text: page.heading
            width: parent.width
        }
        Item {
            height: 9
            width: 1
        }
        Prose {
            color: Tokens.labelSecondary
            font: Tokens.bodyText
            horizontalAlignment: Text.AlignHCenter
            lineHeight: 1.25
            objectName: "body"
            width: parent.width
            words: page.body
        }
        Item {
            height: 8
            visible: remark.visible
            width: 1
        }
        Prose {
            id: remark

            color: Tokens.labelSecondary
            font: Tokens.footnote
            horizontalAlignment: Text.AlignHCenter
            objectName: "remark"
            visible: words !== ""
            width: parent.width
            words: page.remark
        }
    }
}
