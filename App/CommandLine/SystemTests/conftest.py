import pytest
from tinkra_world.fixtures import world  # noqa: F401
from typist import Typist


@pytest.fixture
def tinkra(world):  # noqa: F811
    """Somebody at a terminal of the world, whose bus can start the notification daemon."""
    world.let_bus_start_daemon()
    return Typist(world)
