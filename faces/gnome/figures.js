// The widest figure that the label shows.
const WIDEST_FIGURE = '10000M';

/** The live text: one label for each figure, so that no figure moves when another changes. */
const Figures = GObject.registerClass({
    GTypeName: 'TidewellFigures',
}, class Figures extends St.BoxLayout {
    _init() {
        super._init({style_class: 'tidewell-figures', y_align: Clutter.ActorAlign.CENTER});
    }

    /** Shows a text such as "↓12K ↑3K". */
    show(text) {
        const figures = text.split(' ');
        while (this.get_n_children() > figures.length)
            this.get_last_child().destroy();
        while (this.get_n_children() < figures.length)
            this._addFigure(figures[this.get_n_children()]);
        figures.forEach((figure, index) => {
            const label = this.get_child_at_index(index).get_last_child();
            if (label.text !== figure)
                label.text = figure;
        });
    }

    /** An unseen label behind the figure keeps its column as wide as the widest figure in the theme's font. */
    _addFigure(figure) {
        const column = new St.Widget({layout_manager: new Clutter.BinLayout(), y_align: Clutter.ActorAlign.CENTER});
        column.add_child(new St.Label({text: `${figure.charAt(0)}${WIDEST_FIGURE}`, opacity: 0}));
        column.add_child(new St.Label({text: figure, x_expand: true, x_align: Clutter.ActorAlign.START}));
        this.add_child(column);
    }
});
