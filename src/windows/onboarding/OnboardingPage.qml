import QtQuick
import Kelvo

/// A page of the onboarding window: a centred symbol, a heading and a text.
Item {
    id: page

    required property string heading
    property font headingFont: Tokens.windowTitle
    required property string body
    /// An additional line in a lighter colour; may be empty.
    property string remark: ""
    default property alias symbol: symbolPlace.data

    Column {
        anchors.left: parent.left
        anchors.leftMargin: Tokens.pagePadding
        anchors.right: parent.right
        anchors.rightMargin: Tokens.pagePadding
        // Versions of Qt differ in how they align what is centred to whole points.
        y: Math.round((parent.height - height) / 2)

        Item {
            id: symbolPlace

            anchors.horizontalCenter: parent.horizontalCenter
            implicitHeight: childrenRect.height
            implicitWidth: childrenRect.width
        }
        Item {
            height: 16
            width: 1
        }
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
        Paragraph {
            color: Tokens.labelSecondary
            font: Tokens.bodyText
            horizontalAlignment: Text.AlignHCenter
            lineHeight: 1.25
            objectName: "body"
            text: page.body
            width: parent.width
        }
        Item {
            height: 8
            visible: remark.visible
            width: 1
        }
        Paragraph {
            id: remark

            color: Tokens.labelTertiary
            font: Tokens.footnote
            horizontalAlignment: Text.AlignHCenter
            objectName: "remark"
            text: page.remark
            visible: text !== ""
            width: parent.width
        }
    }
}
