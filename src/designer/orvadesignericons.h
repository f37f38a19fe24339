#ifndef ORVACAT_DESIGNER_ORVADESIGNERICONS_H
#define ORVACAT_DESIGNER_ORVADESIGNERICONS_H

#include <QIcon>

/** The pictures of the widget box, one simple glyph per widget family. */
enum class OrvaDesignerGlyph {
    PushButton,
    IconButton,
    CheckBox,
    RadioButton,
    LineEdit,
    Label,
    LinkLabel,
    Footbar,
    PagingBar,
    Calendar,
    DateSelector,
    Table,
    Tree,
    ButtonPath,
    FilterBar,
    ComboBox
};

/** Draws @p glyph; needs a QGuiApplication. */
QIcon orvaDesignerIcon(OrvaDesignerGlyph glyph);

#endif // ORVACAT_DESIGNER_ORVADESIGNERICONS_H
