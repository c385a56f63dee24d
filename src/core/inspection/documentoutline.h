#pragma once

#include <QList>
#include <QString>

// What the document structure shows of a page, as the collecting script found it.
struct DocumentOutline
{
    struct Heading
    {
        int level = 1; // 1 … 6
        QString text;
    };
    struct Frame
    {
        QString address;
        QString name;
        QString title;
        bool readable = false; // same origin: its document could be read
        int depth = 0; // 0 for a frame of the page, 1 for a frame inside it, …
    };
    struct Field
    {
        QString type; // "text", "password", "select", "textarea", …
        QString name;
        QString label;
    };
    struct Form
    {
        QString action;
        QString method;
        QString name;
        QList<Field> fields;
    };
    // A script or style sheet: its address, or none and the size of the inline text.
    struct Resource
    {
        QString address;
        int inlineSize = 0;
        QString type; // type attribute of a script, media of a style sheet
    };
    struct Meta
    {
        QString key; // e.g. name="description", http-equiv="refresh", charset
        QString content;
    };

    bool html = false;
    QString url;
    QString title;
    int elements = 0;
    int links = 0;
    QList<Heading> headings;
    QList<Frame> frames;
    QList<Form> forms;
    QList<Resource> scripts;
    QList<Resource> styleSheets;
    QList<Meta> metas;
};
