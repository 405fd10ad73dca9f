import QtQuick
import Kelvo

/// The colours of a health.
QtObject {
    id: colors

    /// A PopoverState.Health.
    required property int health

    readonly property color dot: {
        switch (colors.health) {
        case PopoverState.Operational:
            return Tokens.availableDot;
        case PopoverState.Degraded:
            return Tokens.recoveringDot;
        case PopoverState.Outage:
            return Tokens.outageDot;
        default:
            return Tokens.inactiveDot;
        }
    }
    readonly property color text: {
        switch (colors.health) {
        case PopoverState.Operational:
            return Tokens.availableText;
        case PopoverState.Degraded:
            return Tokens.recoveringText;
        case PopoverState.Outage:
            return Tokens.outageText;
        default:
            return Tokens.labelTertiary;
        }
    }
}
