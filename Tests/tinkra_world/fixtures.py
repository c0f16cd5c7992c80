"""Fixtures for conftest.py files: `from tinkra_world.fixtures import world`."""

import pytest

from .world import World


@pytest.fixture
def world(request):
    """A world of the test's own. Parametrise it indirectly with World's arguments to get another kind."""
    made = World(**getattr(request, "param", {}))
    failures_before = request.session.testsfailed
    yield made
    made.close(check=request.session.testsfailed == failures_before)
