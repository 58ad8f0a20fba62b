"""The golden plots and what stands beside them."""
import pathlib

HERE = pathlib.Path(__file__).resolve().parent


def plots_in(names):
    """The plots of that name, and those in the folders of that name; without names all there are."""
    paths = [pathlib.Path(name) for name in names] or [HERE]
    return [plot for path in paths for plot in ([path] if path.is_file() else sorted(path.rglob("*.plt")))]


def options_of(plot):
    """The options of a plot, of its own (NAME.args) or those of its folder (folder.args)."""
    files = plot.with_suffix(".args"), plot.with_name("folder.args")
    return next((file.read_text().split() for file in files if file.exists()), [])
