"""The growth curves as SVG files."""
import matplotlib

matplotlib.use("svg")
matplotlib.rcParams["svg.hashsalt"] = "kel"  # the same file for the same figures
matplotlib.rcParams["svg.fonttype"] = "none"

from matplotlib import pyplot  # noqa: E402 (the back end comes first)

GOAL = 2


def write_plot(curves, title, path):
    figure, axes = pyplot.subplots(figsize=(8, 4.5))
    for operation, of in curves.items():
        style = "--" if operation.startswith("count table") else "-"
        axes.plot(of.keys(), of.values(), style, marker="o", markersize=4, label=operation)
    axes.axhline(GOAL, color="grey", linewidth=0.8)
    axes.set(title=title, xscale="log", xlabel="paths that stand", ylabel="time, over that with one path", ylim=0)
    axes.legend(fontsize="small", loc="center left", bbox_to_anchor=(1, 0.5))
    figure.savefig(path, bbox_inches="tight", metadata={"Date": None, "Creator": None})
    pyplot.close(figure)


def write_plots(growth, folder):
    """`growth`: by ports and operation, the figure for each number of standing paths."""
    for ports in dict.fromkeys(where for where, _ in growth):
        curves = {operation: of for (where, operation), of in growth.items() if where == ports}
        write_plot(curves, f"Growth, {ports}", folder / f"growth-{ports.replace(' ', '-')}.svg")
