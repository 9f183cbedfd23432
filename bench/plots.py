"""The growth curves as SVG files."""
import matplotlib

matplotlib.use("svg")
matplotlib.rcParams["svg.hashsalt"] = "kel"  # the same file for the same figures
matplotlib.rcParams["svg.fonttype"] = "none"
matplotlib.rcParams["axes.spines.top"] = matplotlib.rcParams["axes.spines.right"] = False

from matplotlib import pyplot  # noqa: E402 (the back end comes first)

GOAL = 2

# Side by side in one plot: what changes the paths, and what reads of them. Names of operations begin like this.
panels = {"adding and removing": ("path", "count table"), "reading": ("queue",)}
colours = ("#0072b2", "#d55e00", "#009e73", "#cc79a7", "#e69f00")  # told apart without seeing red or green


def draw_panel(axes, title, curves):
    existing = list(next(iter(curves.values())))
    families = [name.startswith("count table") or name.endswith(", any") for name in curves]
    for index, (operation, of) in enumerate(curves.items()):
        nth_of_family = families[:index].count(families[index])
        axes.plot(existing, of.values(), "--" if families[index] else "-", color=colours[nth_of_family],
                  marker="o", markersize=4, label=operation)
    axes.axhline(GOAL, color="grey", linewidth=0.8)
    axes.annotate("goal: below", (existing[0], GOAL), (0, -4), textcoords="offset points", color="grey",
                  fontsize="small", verticalalignment="top")
    axes.set(title=title, xscale="log", xlabel="existing paths")
    axes.set_xticks(existing, [f"{number:,}" for number in existing])
    axes.minorticks_off()
    axes.legend(fontsize="small", loc="upper left", frameon=False)


def write_plot(curves, title, path):
    figure, all_axes = pyplot.subplots(1, len(panels), figsize=(10, 4.5), sharey=True, layout="constrained")
    highest = max(value for of in curves.values() for value in of.values())
    all_axes[0].set(ylabel="time, over that with one path", ylim=(0, max(1.7 * GOAL, highest + 0.5)))
    for axes, (name, beginnings) in zip(all_axes, panels.items()):
        draw_panel(axes, name, {operation: of for operation, of in curves.items() if operation.startswith(beginnings)})
    figure.suptitle(title)
    figure.savefig(path, metadata={"Date": None, "Creator": None})
    pyplot.close(figure)


def write_plots(growth, folder):
    """`growth`: by pattern and operation, the figure for each number of existing paths."""
    for pattern in ("in a row", "at random"):
        curves = {operation: of for (its_pattern, operation), of in growth.items() if its_pattern == pattern}
        write_plot(curves, f"Growth, {pattern}", folder / f"growth-{pattern.replace(' ', '-')}.svg")
