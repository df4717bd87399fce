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
            const label = this.get_child_at_index(index);
            if (label.text !== figure)
                label.text = figure;
        });
    }

    _addFigure(figure) {
        const label = new St.Label({text: figure, y_align: Clutter.ActorAlign.CENTER});
        label.clutter_text.ellipsize = Pango.EllipsizeMode.NONE;
        label.connect('style-changed', () => this._fixWidth(label));
        this.add_child(label);
        this._fixWidth(label);
    }

    /** Gives the label the width of the widest figure in the theme's font. */
    _fixWidth(label) {
        if (!label.get_stage())
            return;
        const {text} = label;
        label.text = `${text.charAt(0)}${WIDEST_FIGURE}`;
        label.set_width(-1);
        label.set_width(label.get_preferred_width(-1)[1]);
        label.text = text;
    }
});
